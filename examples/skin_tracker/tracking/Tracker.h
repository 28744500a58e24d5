#pragma once

#include "Colours.h"
#include "HandModel.h"
#include "MotionFilter.h"
#include "Regions.h"
#include "Stillness.h"

#include <opencv2/core.hpp>
#include <tarvos/core/cvdata/Image.h>
#include <tarvos/core/cvdata/features/Blobs.h>
#include <tarvos/core/cvdata/features/VisContourSamplePts.h>

#include <optional>

namespace skin_tracker {

/// Follows one hand through a sequence of frames.
///
/// The general skin model starts the track at the largest region of skin. The first frames teach the colours of this
/// hand, which then take over. In each frame the region nearest to the predicted place is taken for the hand; when
/// there is none within reach, the prediction goes on alone, its size kept and its reach growing, until the hand is
/// back; after two seconds the track ends, and the hand is looked for anew. What has the colours but stays as still as
/// the background is background: it is given up and does not come back.
class Tracker {
public:
    /// Tracks with derivatives of the box up to @p order - 1.
    explicit Tracker(int order) : mOrder(order) {}

    /// Looks for the hand in @p frame (8-bit BGR) at @p time in seconds, later than the frame before.
    void process(const tarvos::core::cvdata::Image& frame, double time);

    /// Whether there is a track: a hand was seen, and not longer ago than two seconds. Otherwise there is no motion()
    /// to ask for.
    bool tracking() const { return mMotion.has_value(); }
    /// Whether the hand was seen in the last frame.
    bool found() const { return mFound; }
    /// The estimate of where the hand is and how it moves.
    const MotionFilter& motion() const { return *mMotion; }
    /// Where the centre of the hand was expected before the last frame was looked at.
    cv::Point2d predictedCentre() const { return mPredictedCentre; }
    /// The regions of the hand's colours in the last frame: near the hand, or all where it was not at once found.
    const tarvos::core::cvdata::Blobs& blobs() const { return mBlobs; }
    /// Area of the hand in pixels in the last frame, 0 when it was not found.
    int area() const { return mFound ? mArea : 0; }
    /// Outline of the hand in the last frame, empty when it was not found.
    const tarvos::core::cvdata::VisContourSamplePts& outline() const { return mOutline; }

private:
    int mOrder;
    cv::Mat mSkin = skinColours();
    Stillness mStillness;
    HandModel mHand;
    int mFramesLearned = 0;
    std::optional<MotionFilter> mMotion;
    cv::Point2d mPredictedCentre;
    tarvos::core::cvdata::Blobs mBlobs;
    tarvos::core::cvdata::VisContourSamplePts mOutline;
    bool mFound = false;
    double mLastSeen = 0.0;
    double mLastMoved = 0.0;
    bool mHasMoved = false;
    int mArea = 0;

    cv::Rect neighbourhood() const;
    Regions regionsIn(const cv::Mat& pixels, const cv::Rect& area) const;
    Regions regionsOf(cv::Mat& mask, const cv::Point& corner) const;
    void learn(const cv::Mat& pixels);
    void miss(double time);
    bool isBackground(const cv::Mat& region, double time);
    void giveUp(const cv::Mat& region);
    const tarvos::core::cvdata::Blobs::BlobInfo* pick(const Regions& regions) const;
};

}  // namespace skin_tracker
