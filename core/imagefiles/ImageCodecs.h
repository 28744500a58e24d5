#pragma once

#include <opencv2/core.hpp>

#include <string>
#include <vector>

/// The private module over OpenCV's codecs. It depends on them and on the more than one hundred libraries behind them,
/// so that only programs that load or save an image pay for those.
namespace tarvos::core::imagefiles {

struct ImageCodecs {
    /// Decodes the image file at @p path to 8-bit BGR, without regard to an EXIF orientation; empty if OpenCV cannot.
    cv::Mat (*read)(const std::string& path);
    /// Encodes @p pixels, which are continuous and in OpenCV's channel order, in the format of @p ending (".png").
    std::vector<unsigned char> (*encode)(const cv::Mat& pixels, const std::string& ending);
};

/// The symbol under which the module exports its ImageCodecs.
constexpr const char* IMAGE_CODECS = "tarvosImageCodecs";

}  // namespace tarvos::core::imagefiles
