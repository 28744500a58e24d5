#pragma once

#include "Tracker.h"

#include <opencv2/core.hpp>
#include <tarvos/core/cvdata/Image.h>

#include <deque>

namespace skin_tracker {

/// Draws what a tracker knows into its frames: box and outline of the hand, the centre that was predicted, and the
/// trail of the last centres.
class Annotation {
public:
    /// Lengthens the trail by where @p tracker sees the hand. To be called for every frame.
    void follow(const Tracker& tracker);
    void draw(const Tracker& tracker, tarvos::core::cvdata::Image& frame) const;
    /// A line @p width pixels wide that tells what the colours mean.
    static cv::Mat legend(int width);

private:
    std::deque<cv::Point> mTrail;
};

}  // namespace skin_tracker
