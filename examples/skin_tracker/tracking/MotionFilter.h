#pragma once

#include <opencv2/core.hpp>
#include <tarvos/vision/KalmanFilter.h>

namespace skin_tracker {

/// The motion of a box, estimated from measured boxes: its centre and size, and their derivatives, in pixels and
/// seconds.
class MotionFilter {
public:
    /// A filter with derivatives up to @p order - 1 that begins at rest, with @p box at @p time in pictures @p
    /// pictureWidth pixels wide.
    MotionFilter(int order, int pictureWidth, const cv::Rect2d& box, double time);

    /// Moves on to @p time.
    void predict(double time) { mFilter.predict(time); }
    /// Corrects the estimate by the box measured at the time of the prediction.
    void correct(const cv::Rect2d& box);
    /// Keeps the box's size until the next correction.
    void keepSize();

    cv::Point2d centre() const { return (box().tl() + box().br()) / 2; }
    /// Velocity of the centre in pixels per second.
    cv::Point2d velocity() const;
    cv::Rect2d box() const;
    /// How far the estimated centre may be off, in pixels: three standard deviations.
    double uncertainty() const;

private:
    tarvos::vision::KalmanFilter mFilter;
};

}  // namespace skin_tracker
