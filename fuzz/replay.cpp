/// @file
/// Runs a fuzz target without a fuzzer: over the files in a directory, and over as many made-up inputs as are asked
/// for, which are always the same: `TARGET DIRECTORY [COUNT]`.

#include "Input.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

int main(int argc, char** argv) {
    if (argc < 2)
        return 2;
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::vector<char> bytes(std::istreambuf_iterator<char>(file), {});
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
        ++files;
    }
    const int count = argc > 2 ? std::stoi(argv[2]) : 0;
    std::mt19937 random;  // NOLINT(cert-msc51-cpp): the same inputs in every run
    for (int i = 0; i < count; ++i) {
        std::vector<std::uint8_t> bytes(random() % 200);
        for (std::uint8_t& byte : bytes)
            byte = static_cast<std::uint8_t>(random());
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
    std::cout << files << " files and " << count << " made-up inputs" << std::endl;
    return files > 0 ? 0 : 1;
}
