#pragma once

#include <opencv2/core/mat.hpp>

#include <string>

namespace tarvos::core::cvdata {

/// Decodes the file at @p path to 8-bit BGR, the pixels as stored (no rotation by EXIF). Empty for whatever cannot be
/// decoded or is larger than an image can be, for any reason, and then not a word on standard error. Never throws.
cv::Mat loadColourImage(const std::string& path);

}  // namespace tarvos::core::cvdata
