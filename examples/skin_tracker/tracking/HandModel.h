#pragma once

#include <opencv2/core.hpp>
#include <tarvos/core/cvdata/features/ColourHist2d.h>

namespace skin_tracker {

/// The colours of one hand in one light, learned from frames in which it is known where the hand is.
class HandModel {
public:
    HandModel();

    /// Learns from a frame's 8-bit BGR @p pixels, of which those that are not 0 in @p known are the hand's: counts
    /// their colours, and those around their box.
    void learn(const cv::Mat& pixels, const cv::Mat& known);
    /// A mask of the @p pixels that have the hand's colours.
    cv::Mat maskOf(const cv::Mat& pixels) const;
    /// How many frames it has learned from.
    int framesLearned() const { return mFrames; }

private:
    // Histograms over hue, saturation and value.
    tarvos::core::cvdata::ColourHist2d mHand;
    tarvos::core::cvdata::ColourHist2d mSurroundings;
    tarvos::core::cvdata::ColourHist2d mColours;  ///< 1 for the bins that belong to the hand, else 0
    int mFrames = 0;
};

}  // namespace skin_tracker
