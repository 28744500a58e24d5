#pragma once

#include <opencv2/core.hpp>
#include <tarvos/core/cvdata/features/ColourHist2d.h>

namespace skin_tracker {

/// The colours of one hand in one light, and those around it: two histograms over hue, saturation and value.
class HandModel {
public:
    HandModel();

    /// Learns from @p hsv, in which the pixels that are not 0 in @p known are the hand's: counts their colours, and
    /// those around their box.
    void learn(const cv::Mat& hsv, const cv::Mat& known);
    /// The hand's colours, for markColours().
    const cv::Mat& colours() const { return mColours; }

private:
    tarvos::core::cvdata::ColourHist2d mHand;
    tarvos::core::cvdata::ColourHist2d mSurroundings;
    cv::Mat mColours;  ///< 255 for the bins of the histograms that are the hand's
};

}  // namespace skin_tracker
