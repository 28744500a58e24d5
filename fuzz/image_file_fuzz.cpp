/// @file
/// Files of any content that begin like an image, loaded beside cv::imread.

#include "Input.h"
#include "core/cvdata/MatView.h"

#include <opencv2/imgcodecs.hpp>

#include <algorithm>
#include <fstream>
#include <string>
#include <sys/mman.h>

namespace {

using namespace std::string_literals;
using tarvos::core::cvdata::Image;

const std::string BEGINNINGS[] = {"\x89PNG", "\xFF\xD8\xFF",    "BM", "II*\0"s, "MM\0*"s, "RIFF", "P",
                                  "#?",      "\x59\xA6\x6A\x95"};

cv::Mat read(const std::string& path) {
    try {
        return cv::imread(path, cv::IMREAD_COLOR | cv::IMREAD_IGNORE_ORIENTATION);
    } catch (const cv::Exception&) {
        return {};
    }
}

bool isSame(const cv::Mat& a, const cv::Mat& b) {
    return a.size() == b.size() && (a.empty() || cv::norm(a, b, cv::NORM_INF) == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const std::string path = "/proc/self/fd/" + std::to_string(memfd_create("image", 0));
    const std::string content(bytes, bytes + size);
    if (std::none_of(std::begin(BEGINNINGS), std::end(BEGINNINGS),
                     [&](const std::string& beginning) { return content.rfind(beginning, 0) == 0; }))
        return 0;
    // OpenCV leaves Radiance files open that it rejects, until there are no more descriptors: some hundreds are enough.
    static int radiance = 0;
    if (content[0] == '#' && ++radiance > 200)
        return 0;
    std::ofstream(path, std::ios::binary) << content;
    const Image image(path);
    // DICOM is refused: OpenCV's decoder of it ends the process.
    if (content.size() > 131 && content.compare(128, 4, "DICM") == 0)
        return 0;
    const cv::Mat expected = read(path);
    // Some decoders leave what a damaged file lacks as it was in memory: those differ from themselves, too.
    Input::note(content.size(), " bytes that begin ", content.substr(0, 4));
    FUZZ_CHECK(isSame(matView(image), expected) || !isSame(read(path), expected));
    return 0;
}
