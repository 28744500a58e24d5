#pragma once

#include <opencv2/core.hpp>

namespace skin_tracker {

/// The number of values of OpenCV's 8-bit hue, saturation and value.
constexpr int HUES = 180;
constexpr int LEVELS = 256;

/// The hue, saturation and value of 8-bit BGR @p pixels, with red and blue exchanged as the library's skin model has
/// it.
cv::Mat hueSaturationValue(const cv::Mat& pixels);

/// The colours of skin by the library's mixture model: 255 or 0 over hue and saturation.
cv::Mat skinColours();

/// Adds the colours of @p hsv where @p mask is not 0 to @p histogram: 64-bit, over hue, saturation and value.
void countColours(const cv::Mat& hsv, const cv::Mat& mask, cv::Mat& histogram);

/// A mask, 255 or 0, of the pixels of @p hsv whose colour is 255 in @p colours: 32-bit, over hue and saturation, or
/// those and value.
cv::Mat markColours(const cv::Mat& hsv, const cv::Mat& colours);

}  // namespace skin_tracker
