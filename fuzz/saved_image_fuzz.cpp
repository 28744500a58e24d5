/// @file
/// Images of any size, layout, depth and region of interest, saved, loaded again, and damaged, beside cv::imread.

#include "Input.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <tarvos/core/cvdata/MatView.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using tarvos::core::cvdata::Image;

const std::string ENDINGS[] = {".png", ".bmp", ".ppm", ".tiff", ".pam", ".jpg", ".webp"};
constexpr int LOSSLESS = 4;  ///< the first ones; .pam is compared with cv::imread alone
constexpr Image::BitsPerChannel BITS[] = {Image::BITS_8U, Image::BITS_16U, Image::BITS_32F};

/// What an 8-bit image should be when it is loaded again.
cv::Mat asBgr(const Image& image) {
    const bool redFirst = image.channels() == Image::CHANNELS_RGB || image.channels() == Image::CHANNELS_RGBA;
    cv::Mat bgr;
    if (image.nofChannels() == 1)
        cv::cvtColor(matCopy(image), bgr, cv::COLOR_GRAY2BGR);
    else if (image.nofChannels() == 4)
        cv::cvtColor(matCopy(image), bgr, redFirst ? cv::COLOR_RGBA2BGR : cv::COLOR_BGRA2BGR);
    else
        bgr = matCopy(image);
    if (redFirst && image.nofChannels() == 3)
        cv::cvtColor(bgr, bgr, cv::COLOR_RGB2BGR);
    return bgr;
}

bool isSame(const cv::Mat& a, const cv::Mat& b) {
    return a.size() == b.size() && (a.empty() || cv::norm(a, b, cv::NORM_INF) == 0.0);
}

cv::Mat read(const std::string& path) {
    try {
        return cv::imread(path, cv::IMREAD_COLOR | cv::IMREAD_IGNORE_ORIENTATION);
    } catch (const cv::Exception&) {
        return {};
    }
}

bool isEncoded(const std::string& ending, const cv::Mat& pixels) {
    std::vector<unsigned char> bytes;
    try {
        return cv::imencode(ending, pixels, bytes);
    } catch (const cv::Exception&) {
        return false;
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const std::string stem =
        std::filesystem::temp_directory_path() / ("tarvos-fuzz-" + std::to_string(getpid()));
    Input input(bytes, size);
    const int width = 1 + input.below(70), height = 1 + input.below(9), depth = input.below(3), ending = input.below(7);
    Image image(width, height, static_cast<Image::ColorChannels>(input.below(6)), BITS[depth]);
    cv::Mat pixels = matCopy(image);
    cv::theRNG().state = input.byte() + 1U;
    cv::randu(pixels, 0, 200);
    for (int y = 0; y < height; ++y)
        std::memcpy(image.row(y), pixels.ptr(y), pixels.step[0]);
    if (input.below(2) == 1)
        cvSetImageROI(image.iplImage(), cvRect(0, 0, 1, 1));
    const std::string path = stem + ENDINGS[ending];
    Input::note(width, "x", height, ", layout ", image.channels(), ", depth ", image.bitsPerChannel(), ", ", path);
    if (!image.save(path)) {  // OpenCV has no .ppm of four channels, say
        FUZZ_CHECK(!isEncoded(ENDINGS[ending], pixels));
        return 0;
    }
    const Image whole(path);
    FUZZ_CHECK(isSame(matView(whole), read(path)));  // an empty one where OpenCV cannot read what it writes
    FUZZ_CHECK(ending >= LOSSLESS || depth != 0 || isSame(matView(whole), asBgr(image)));

    const auto cut = std::filesystem::file_size(path) * input.byte() / 256;
    std::filesystem::resize_file(path, cut);
    const auto place = static_cast<std::streamoff>(cut * input.byte() / 256);
    const auto damage = static_cast<char>(input.byte());
    std::fstream(path, std::ios::binary | std::ios::in | std::ios::out).seekp(place).put(damage);
    Input::note("cut to ", cut, " bytes, byte ", place, " being ", int{damage});
    const cv::Mat expected = read(path);
    const Image loaded(path);
    // Some decoders leave the missing part of an image uninitialised: those differ from themselves, too.
    FUZZ_CHECK(isSame(matView(loaded), expected) || !isSame(read(path), expected));
    std::filesystem::remove(path);
    return 0;
}
