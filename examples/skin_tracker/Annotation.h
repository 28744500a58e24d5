#pragma once

#include "tracking/Tracker.h"

#include <opencv2/core.hpp>
#include <tarvos/core/cvdata/Image.h>

#include <deque>

namespace skin_tracker {

/// Draws into frames the hand's box and outline, its predicted centre, and the trail of its last centres.
class Annotation {
public:
    /// Draws what @p tracker found into @p frame; to be called for every frame.
    void draw(const Tracker& tracker, tarvos::core::cvdata::Image& frame);
    /// A legend of the colours, @p width pixels wide.
    static cv::Mat legend(int width);

private:
    std::deque<cv::Point> mTrail;
};

}  // namespace skin_tracker
