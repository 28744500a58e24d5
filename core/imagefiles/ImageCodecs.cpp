#include <opencv2/imgcodecs.hpp>
#include <tarvos/core/Export.h>
#include <tarvos/core/imagefiles/ImageCodecs.h>

namespace tarvos::core::imagefiles {

namespace {

cv::Mat read(const std::string& path) {
    cv::Mat pixels = cv::imread(path, cv::IMREAD_COLOR | cv::IMREAD_IGNORE_ORIENTATION);
    if (!pixels.empty() && pixels.channels() == 1)  // a grey .pfm, say
        cv::merge(std::vector<cv::Mat>(3, pixels), pixels);
    return pixels;
}

std::vector<unsigned char> encode(const cv::Mat& pixels, const std::string& ending) {
    std::vector<unsigned char> bytes;
    cv::imencode(ending, pixels, bytes);
    return bytes;
}

}  // namespace

extern "C" {
extern TARVOS_CORE_EXPORT const ImageCodecs tarvosImageCodecs;
const ImageCodecs tarvosImageCodecs{read, encode};
}

}  // namespace tarvos::core::imagefiles
