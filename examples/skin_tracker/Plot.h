#pragma once

#include "Tracker.h"

#include <opencv2/core.hpp>
#include <tarvos/core/cvdata/Image.h>

#include <string>
#include <vector>

namespace skin_tracker {

/// Draws a track over time: the place of the hand and its speed, and when it was out of sight.
class Plot {
public:
    /// Adds what @p tracker knows of a frame of @p size at @p time.
    void add(double time, const Tracker& tracker, const cv::Size& size);
    /// The picture, 8-bit BGR. At least one frame must have been added.
    tarvos::core::cvdata::Image draw() const;

private:
    cv::Size mSize;
    std::vector<double> mTimes;       ///< of all frames
    std::vector<cv::Scalar> mShades;  ///< what is behind them
    std::vector<double> mTracked;     ///< the times at which there was a track, and what it was then
    std::vector<double> mX, mY, mSpeed;

    cv::Mat curve(const std::string& title, const std::vector<double>& values, double highest, bool isDownward) const;
};

}  // namespace skin_tracker
