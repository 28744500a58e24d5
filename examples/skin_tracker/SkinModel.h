#pragma once

#include <opencv2/core.hpp>

namespace skin_tracker {

/// Tells skin by its colour, with the library's mixture model over hue and saturation.
class SkinModel {
public:
    /// Evaluates the mixture once for each pair of hue and saturation.
    SkinModel();

    /// Sets the pixels of @p hsv (8-bit hue, saturation, value, as `cv::COLOR_RGB2HSV` makes them of BGR pixels) that
    /// are likely skin to 255 in @p mask (8-bit, one channel), the others to 0.
    void mark(const cv::Mat& hsv, cv::Mat& mask) const;

private:
    cv::Mat mLikely;  ///< hue x saturation, 255 for skin
};

}  // namespace skin_tracker
