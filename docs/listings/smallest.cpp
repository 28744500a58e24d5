#include <opencv2/core/core_c.h>
#include <tarvos/core/cvdata/Image.h>

#include <iostream>

using tarvos::core::cvdata::Image;

int main() {
    const Image image(320, 240, Image::CHANNELS_BGR, Image::BITS_8U);
    cvSet(image.iplImage(), cvScalar(110, 143, 201));  // OpenCV works on the image's own pixels
    std::cout << "the first pixel's blue is " << int(image.row(0)[0]) << std::endl;
}
