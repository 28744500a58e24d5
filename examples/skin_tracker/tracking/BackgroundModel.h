#pragma once

#include <opencv2/core.hpp>

namespace skin_tracker {

/// Distinguishes what moves in a sequence of frames from what stays, and remembers what was found to be background.
/// It compares the mean colours of cells of 8 x 8 pixels: a cell moves while it differs from its mean over about the
/// last second.
class BackgroundModel {
public:
    /// Takes the next frame, 8-bit BGR, at @p time in seconds.
    void add(const cv::Mat& pixels, double time);

    const cv::Size& size() const { return mSize; }
    /// Whether the region of @p mask (8-bit, one channel, as large as the frame), or its edge, moves in this frame.
    bool moves(const cv::Mat& mask) const;
    /// Remembers the region of @p mask as background, with its mean colours.
    void remember(const cv::Mat& mask);
    /// Sets to 0 in @p mask, whose first pixel is at @p corner of the frame, what was remembered and still looks the
    /// same.
    void removeBackground(cv::Mat& mask, const cv::Point& corner) const;

private:
    double mTime = 0.0;
    cv::Size mSize;       ///< of the frames
    cv::Mat mCells;       ///< their colours
    cv::Mat mMean;        ///< of the last second
    cv::Mat mMoving;      ///< 255 where a cell moves
    cv::Mat mBackground;  ///< 255 where a cell was remembered
    cv::Mat mRemembered;  ///< the colours it had then

    cv::Mat cellsOf(const cv::Mat& mask) const;
};

}  // namespace skin_tracker
