#pragma once

#include <opencv2/core.hpp>
#include <tarvos/core/cvdata/features/ColourHist2d.h>

namespace skin_tracker {

/// The colours of one hand in one light, and those around it: two histograms over hue, saturation and value. It
/// learns from frames in which part of the hand is known.
class HandModel {
public:
    HandModel();

    /// Learns from @p hsv (8-bit hue, saturation, value), in which the pixels that are not 0 in @p known are of the
    /// hand: grows from there over neighbouring pixels and colours to the whole hand.
    void learn(const cv::Mat& hsv, const cv::Mat& known);
    /// Sets the pixels of the hand's colours to 255 in @p mask (8-bit, one channel), the others to 0.
    void mark(const cv::Mat& hsv, cv::Mat& mask) const;

private:
    tarvos::core::cvdata::ColourHist2d mHand;
    tarvos::core::cvdata::ColourHist2d mSurroundings;
    cv::Mat mOfHand;  ///< for each bin of the histograms 255 if its colour is the hand's
};

}  // namespace skin_tracker
