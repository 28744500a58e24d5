/// @file
/// Runs a fuzz target without a fuzzer, `TARGET DIRECTORY COUNT`: over the files in a directory, and over COUNT random
/// inputs, which are always the same.

#include "Input.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <random>
#include <string>
#include <vector>

int main(int argc, char** argv) {
    if (argc != 3)
        return 2;
    const auto run = [](const std::vector<std::uint8_t>& bytes) { LLVMFuzzerTestOneInput(bytes.data(), bytes.size()); };
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
        std::ifstream file(entry.path(), std::ios::binary);
        run({std::istreambuf_iterator<char>(file), {}});
    }
    std::mt19937 random;  // NOLINT(cert-msc51-cpp): the same inputs in every run
    for (int i = std::stoi(argv[2]); i > 0; --i) {
        std::vector<std::uint8_t> bytes(random() % 200);
        std::generate(bytes.begin(), bytes.end(), std::ref(random));
        run(bytes);
    }
    return std::filesystem::is_empty(argv[1]) ? 1 : 0;
}
