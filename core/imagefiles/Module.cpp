#include <opencv2/imgcodecs.hpp>
#include <tarvos/core/Export.h>
#include <tarvos/core/imagefiles/ImageFiles.h>

namespace tarvos::core::imagefiles {

namespace {

cv::Mat decode(const std::string& path) {
    cv::Mat pixels = cv::imread(path, cv::IMREAD_COLOR | cv::IMREAD_IGNORE_ORIENTATION);
    if (!pixels.empty() && pixels.channels() == 1)  // a grey .pfm, say
        cv::merge(std::vector<cv::Mat>(3, pixels), pixels);
    return pixels.type() == CV_8UC3 ? pixels : cv::Mat();
}

std::vector<unsigned char> encode(const cv::Mat& pixels, const std::string& extension) {
    std::vector<unsigned char> bytes;
    cv::imencode(extension, pixels, bytes);
    return bytes;
}

}  // namespace

extern "C" TARVOS_CORE_EXPORT const Module tarvosImageFiles;
const Module tarvosImageFiles{decode, encode};

}  // namespace tarvos::core::imagefiles
