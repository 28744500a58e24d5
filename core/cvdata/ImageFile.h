#pragma once

#include <opencv2/core.hpp>

#include <string>

namespace tarvos::core::cvdata {

/// The pixels of the image file at @p path as `cv::imread` decodes them to colour, or an empty matrix.
cv::Mat readImageFile(const std::string& path);

/// Writes @p pixels, packed and with red before blue if @p redFirst, to @p path in the format of its ending. The reason
/// if that fails, otherwise nothing; whatever was at @p path is then unchanged.
std::string writeImageFile(const std::string& path, const cv::Mat& pixels, bool redFirst);

}  // namespace tarvos::core::cvdata
