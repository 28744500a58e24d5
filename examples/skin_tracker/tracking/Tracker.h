#pragma once

#include "BackgroundModel.h"
#include "HandModel.h"
#include "MotionFilter.h"

#include <opencv2/core.hpp>
#include <tarvos/core/cvdata/Image.h>
#include <tarvos/core/cvdata/features/Blobs.h>
#include <tarvos/core/cvdata/features/VisContourSamplePts.h>
#include <tarvos/vision/Regions.h>

#include <optional>

namespace skin_tracker {

/// Follows one hand through a sequence of frames.
///
/// In the first frames, the largest region of skin teaches the colours of this hand. The track starts at the largest
/// region of those colours. Then the region nearest to the predicted position is taken for the hand in each frame; if
/// there is none within reach, the prediction goes on alone, its size kept and its reach growing, until the hand is
/// back; after two seconds the track ends, and the hand is searched for again. What has the colours but does not move
/// is background: it is given up, and left out as long as it looks the same.
class Tracker {
public:
    /// Tracks with derivatives of the box up to @p order - 1.
    explicit Tracker(int order) : mOrder(order) {}

    /// Searches @p frame (8-bit BGR), taken at @p time in seconds, later than the frame before, for the hand.
    void process(const tarvos::core::cvdata::Image& frame, double time);

    /// Whether there is a track: a hand was seen, and not longer ago than two seconds. Otherwise motion()
    /// must not be called.
    bool tracking() const { return mMotion.has_value(); }
    /// Whether the hand was seen in the last frame.
    bool found() const { return mFound; }
    /// The estimate of where the hand is and how it moves.
    const MotionFilter& motion() const { return *mMotion; }
    /// The predicted centre of the hand in the last frame.
    cv::Point2d predictedCentre() const { return mPredictedCentre; }
    /// The regions of the hand's colours in the last frame: near the hand, or all if it was not found there whole.
    const tarvos::core::cvdata::Blobs& blobs() const { return mBlobs; }
    /// Area of the hand in pixels in the last frame, 0 if it was not found.
    int area() const { return mFound ? mArea : 0; }
    /// Outline of the hand in the last frame, empty if it was not found.
    const tarvos::core::cvdata::VisContourSamplePts& outline() const { return mOutline; }

private:
    using Region = tarvos::vision::Regions::BlobInfo;

    int mOrder;
    BackgroundModel mBackground;
    HandModel mHand;
    std::optional<MotionFilter> mMotion;
    cv::Point2d mPredictedCentre;
    tarvos::core::cvdata::Blobs mBlobs;
    tarvos::core::cvdata::VisContourSamplePts mOutline;
    bool mFound = false;
    double mLastSeen = 0.0;
    double mLastMoved = 0.0;
    bool mHasMoved = false;
    int mArea = 0;

    void predict(double time);
    void learn(const cv::Mat& pixels);
    tarvos::vision::Regions search(const cv::Mat& pixels);
    cv::Rect neighbourhood(const cv::Rect& frame) const;
    tarvos::vision::Regions regionsIn(const cv::Mat& pixels, const cv::Rect& area) const;
    tarvos::vision::Regions regionsOf(cv::Mat& mask, const cv::Point& corner) const;
    const Region* pick(const tarvos::vision::Regions& regions) const;
    bool restsTooLong(const cv::Mat& hand, double time);
    void giveUp(const cv::Mat& hand);
    void follow(const Region& hand, int pictureWidth, double time);
    void miss(double time);
};

}  // namespace skin_tracker
