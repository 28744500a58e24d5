#include "MotionFilter.h"

#include <tarvos/core/cvdata/pose/VectorPose.h>

#include <algorithm>
#include <cmath>

namespace skin_tracker {

namespace {

using tarvos::core::State;
using tarvos::math::Vector;

/// Standard deviation of a measured edge, in pixels: the edge of a hand is ragged.
constexpr double MEASUREMENT_DEVIATION = 2.0;
/// How far the highest derivative of a hand's motion drifts in a second, in picture widths: much, since a hand starts
/// suddenly.
constexpr double DRIFT = 0.8;

Vector measured(const cv::Rect2d& box) {
    return Vector::of(box.x + box.width / 2, box.y + box.height / 2, box.width, box.height);
}

State stateAt(int order, const cv::Rect2d& box, double time) {
    State state(tarvos::core::cvdata::VectorPose(4), order);
    state.setPoseData(measured(box));
    state.setTimeStamp(time);
    return state;
}

Vector all(double value) {
    return Vector::of(value, value, value, value);
}

}  // namespace

MotionFilter::MotionFilter(int order, int pictureWidth, const cv::Rect2d& box, double time)
    : mFilter(stateAt(order, box, time), all(DRIFT * pictureWidth), all(MEASUREMENT_DEVIATION)) {}

void MotionFilter::correct(const cv::Rect2d& box) {
    mFilter.correct(measured(box));
}

void MotionFilter::keepSize() {
    State& state = mFilter.state();
    for (int order = 1; order < state.getMaxOrder(); ++order) {
        const Vector& derivative = state.derivative(order);
        state.setIncDataFromVector(Vector::of(derivative[0], derivative[1], 0.0, 0.0), order);
    }
}

cv::Point2d MotionFilter::velocity() const {
    const Vector& velocity = mFilter.state().derivative(1);
    return {velocity[0], velocity[1]};
}

cv::Rect2d MotionFilter::box() const {
    const Vector pose = mFilter.state().getPoseData();
    const double width = std::max(pose[2], 1.0), height = std::max(pose[3], 1.0);
    return {pose[0] - width / 2, pose[1] - height / 2, width, height};
}

double MotionFilter::uncertainty() const {
    return 3.0 * std::sqrt(mFilter.covariance()(0, 0) + mFilter.covariance()(1, 1));
}

}  // namespace skin_tracker
