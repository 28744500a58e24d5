#pragma once

#include <opencv2/core.hpp>
#include <opencv2/video/tracking.hpp>
#include <tarvos/core/trackingdata/State.h>

namespace skin_tracker {

/// Estimates the motion of a box from measured boxes: a Kalman filter whose state vector is the packed incremental form
/// of a State: box | velocity | acceleration | ..., in pixels and seconds.
class MotionFilter {
public:
    /// A filter for boxes in pictures @p pictureWidth pixels wide, with derivatives up to order - 1.
    MotionFilter(int order, int pictureWidth);

    /// Begins at rest with @p box at @p time.
    void start(const cv::Rect2d& box, double time);
    /// Moves on to @p time, which is not before the state's.
    void predict(double time);
    /// Keeps the box's size until the next correction.
    void keepSize();
    /// Corrects the estimate by the box measured at the state's time.
    void correct(const cv::Rect2d& box);

    cv::Point2d centre() const;
    /// Velocity of the centre in pixels per second.
    cv::Point2d velocity() const;
    cv::Rect2d box() const;
    /// How far the estimated centre may be off, in pixels: three standard deviations.
    double uncertainty() const;

private:
    int mOrder;
    double mJerkiness;  ///< standard deviation of the first derivative that is not part of the state
    tarvos::core::State mState;
    cv::KalmanFilter mFilter;

    void store(const cv::Mat& estimate, double time);
};

}  // namespace skin_tracker
