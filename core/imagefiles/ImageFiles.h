#pragma once

#include <opencv2/core.hpp>

#include <string>
#include <vector>

/// Image files, by OpenCV's codecs. These are in a private module of their own: they depend on more than one hundred
/// libraries, for which only programs that load or save an image pay.
namespace tarvos::core::imagefiles {

/// The pixels of the image file at @p path as `cv::imread` decodes them to 8-bit BGR, or an empty matrix.
cv::Mat read(const std::string& path);

/// Writes @p pixels, packed and with red before blue if @p redFirst, to @p path in the format of its extension. An
/// empty text, or the reason why that failed; what was at @p path is then unchanged.
std::string write(const std::string& path, const cv::Mat& pixels, bool redFirst);

/// What the module does.
struct Module {
    /// Decodes the image file at @p path to 8-bit BGR, without regard to an EXIF orientation; empty if OpenCV cannot.
    cv::Mat (*decode)(const std::string& path);
    /// Encodes @p pixels, which are continuous and in OpenCV's channel order, in the format of @p extension (".png").
    std::vector<unsigned char> (*encode)(const cv::Mat& pixels, const std::string& extension);
};

/// The symbol under which the module exports its Module.
constexpr const char* MODULE = "tarvosImageFiles";

}  // namespace tarvos::core::imagefiles
