// Loads the images named on the command line and prints their sizes, for tests/core/cvdata/image_module.

#include "core/cvdata/Image.h"

#include <iostream>

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        const tarvos::core::cvdata::Image image(argv[i]);
        std::cout << image.width() << "x" << image.height() << '\n';
    }
}
