#include "MotionFilter.h"

#include <tarvos/core/cvdata/pose/VectorPose.h>

#include <algorithm>
#include <cmath>

namespace skin_tracker {

namespace {

using tarvos::core::cvdata::VectorPose;
using tarvos::math::Vector;

/// Elements of a box: centre x, centre y, width and height in pixels.
constexpr int BOX = 4;

/// Standard deviation of a measured edge, in pixels: the edge of a hand is ragged.
constexpr double MEASUREMENT_DEVIATION = 2.0;
/// Standard deviation of a hand's acceleration, in picture widths per second squared.
constexpr double ACCELERATION = 3.0;

/// A matrix of OpenCV over the elements of @p vector.
cv::Mat view(Vector& vector) {
    return {static_cast<int>(vector.dimension()), 1, CV_64F, vector.data()};
}

cv::Mat measured(const cv::Rect2d& box) {
    const cv::Vec4d elements(box.x + box.width / 2, box.y + box.height / 2, box.width, box.height);
    return cv::Mat(elements, true);
}

/// dt^n / n!: the contribution of the n-th derivative over the time dt.
double taylor(double dt, int n) {
    return std::pow(dt, n) / std::tgamma(n + 1);
}

}  // namespace

MotionFilter::MotionFilter(int order, int pictureWidth)
    : mOrder(order),
      mJerkiness(ACCELERATION * pictureWidth),
      mState(VectorPose(BOX), order),
      mFilter(mState.stateIncDimension(), BOX, 0, CV_64F) {
    cv::setIdentity(mFilter.measurementMatrix);
    cv::setIdentity(mFilter.measurementNoiseCov, cv::Scalar::all(MEASUREMENT_DEVIATION * MEASUREMENT_DEVIATION));
}

void MotionFilter::start(const cv::Rect2d& box, double time) {
    mFilter.statePost = cv::Scalar::all(0.0);
    measured(box).copyTo(mFilter.statePost.rowRange(0, BOX));
    cv::setIdentity(mFilter.errorCovPost, cv::Scalar::all(mJerkiness * mJerkiness));
    mFilter.measurementNoiseCov.copyTo(mFilter.errorCovPost(cv::Rect(0, 0, BOX, BOX)));
    store(mFilter.statePost, time);
}

void MotionFilter::predict(double time) {
    const double dt = time - mState.getTimeStamp();
    // The transition is a Taylor series; noise enters as the derivative above the highest in the state.
    for (int row = 0; row < mOrder; ++row) {
        for (int col = 0; col < mOrder; ++col) {
            const cv::Rect block(col * BOX, row * BOX, BOX, BOX);
            const double noise = taylor(dt, mOrder - row) * taylor(dt, mOrder - col) * mJerkiness * mJerkiness;
            cv::setIdentity(mFilter.transitionMatrix(block), cv::Scalar(col >= row ? taylor(dt, col - row) : 0.0));
            cv::setIdentity(mFilter.processNoiseCov(block), cv::Scalar(noise));
        }
    }
    store(mFilter.predict(), time);
}

void MotionFilter::keepSize() {
    for (int order = 1; order < mOrder; ++order)
        mFilter.statePost.rowRange(order * BOX + 2, order * BOX + 4).setTo(0.0);
    store(mFilter.statePost, mState.getTimeStamp());
}

void MotionFilter::correct(const cv::Rect2d& box) {
    store(mFilter.correct(measured(box)), mState.getTimeStamp());
}

cv::Point2d MotionFilter::centre() const {
    return (box().tl() + box().br()) / 2;
}

cv::Point2d MotionFilter::velocity() const {
    const Vector& velocity = mState.derivative(1);
    return {velocity[0], velocity[1]};
}

cv::Rect2d MotionFilter::box() const {
    Vector pose(BOX);
    mState.getPoseData(pose);
    const double width = std::max(pose[2], 1.0);
    const double height = std::max(pose[3], 1.0);
    return {pose[0] - width / 2, pose[1] - height / 2, width, height};
}

double MotionFilter::uncertainty() const {
    return 3.0 * std::sqrt(mFilter.errorCovPost.at<double>(0, 0) + mFilter.errorCovPost.at<double>(1, 1));
}

void MotionFilter::store(const cv::Mat& estimate, double time) {
    Vector vector(static_cast<unsigned int>(mState.stateIncDimension()));
    estimate.copyTo(view(vector));
    mState.setIncDataFromVector(vector, -1);
    mState.setTimeStamp(time);
}

}  // namespace skin_tracker
