#include "BackgroundModel.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace skin_tracker {

namespace {

constexpr int CELL = 8;
/// How long what is seen counts for the mean, in seconds.
constexpr double MEMORY = 1.0;
/// A camera's noise and flicker, averaged over a cell, stay below this difference of any channel.
constexpr double NOISE = 10.0;
/// A region moves when this share of its cells does.
constexpr double MIN_SHARE = 0.15;

/// 255 where the colours of two pictures are the same but for noise.
cv::Mat similarMask(const cv::Mat& a, const cv::Mat& b) {
    cv::Mat mask;
    cv::inRange(cv::abs(a - b), cv::Scalar::all(0.0), cv::Scalar::all(NOISE), mask);
    return mask;
}

}  // namespace

void BackgroundModel::add(const cv::Mat& pixels, double time) {
    mSize = pixels.size();
    cv::Mat small = pixels;
    for (int cell = 1; cell < CELL; cell *= 2)  // halving is what OpenCV does fastest
        cv::resize(small, small, cv::Size(std::max(small.cols / 2, 1), std::max(small.rows / 2, 1)), 0, 0,
                   cv::INTER_AREA);
    small.convertTo(mCells, CV_32F);
    if (mMean.empty()) {
        mMean = mCells.clone();
        mRemembered = mCells.clone();
        mBackground = cv::Mat::zeros(mCells.size(), CV_8U);
    }
    mMoving = ~similarMask(mCells, mMean);
    cv::accumulateWeighted(mCells, mMean, std::min((time - mTime) / MEMORY, 1.0));
    mTime = time;
}

bool BackgroundModel::moves(const cv::Mat& mask) const {
    const cv::Mat cells = cellsOf(mask);
    return cv::countNonZero(mMoving & cells) >= MIN_SHARE * cv::countNonZero(cells);
}

void BackgroundModel::remember(const cv::Mat& mask) {
    const cv::Mat cells = cellsOf(mask);
    mBackground.setTo(255, cells);
    mMean.copyTo(mRemembered, cells);
}

void BackgroundModel::removeBackground(cv::Mat& mask, const cv::Point& corner) const {
    if (cv::countNonZero(mBackground) == 0)
        return;
    cv::Mat same = mBackground & similarMask(mCells, mRemembered);
    cv::resize(same, same, mSize, 0, 0, cv::INTER_NEAREST);
    mask.setTo(0, same(cv::Rect(corner, mask.size())));
}

/// The cells whose first pixel is in @p mask, and those around them.
cv::Mat BackgroundModel::cellsOf(const cv::Mat& mask) const {
    cv::Mat cells;
    cv::resize(mask, cells, mCells.size(), 0, 0, cv::INTER_NEAREST);
    cv::dilate(cells, cells, cv::Mat());
    return cells;
}

}  // namespace skin_tracker
