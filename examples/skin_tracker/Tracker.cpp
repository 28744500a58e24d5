#include "Tracker.h"

#include "Regions.h"

#include <opencv2/imgproc.hpp>
#include <tarvos/core/cvdata/MatView.h>

#include <algorithm>
#include <cmath>

namespace skin_tracker {

namespace {

using tarvos::core::cvdata::Blobs;
using tarvos::core::cvdata::Image;

/// What has not moved for so long, in seconds, since it was first seen is no hand; a hand that has moved may rest
/// longer.
constexpr double LONGEST_STILLNESS = 1.0;
constexpr double LONGEST_REST = 10.0;
/// A track ends when the hand was not seen for longer than this, in seconds.
constexpr double LONGEST_ABSENCE = 2.0;
/// Regions up to this share of the picture are no hand.
constexpr double LEAST_AREA = 0.002;
/// So many frames teach the colours of the hand.
constexpr int FRAMES_TO_LEARN = 10;
/// A hand grows and shrinks by less than this factor from one frame to the next, and by so much more with each frame in
/// which it is out of sight.
constexpr double MOST_GROWTH = 4.0;

cv::Point2d centreOf(const cv::Rect2d& box) {
    return (box.tl() + box.br()) * 0.5;
}

const Blobs::BlobInfo* largest(const Blobs& blobs) {
    const auto found = std::max_element(blobs.mBlobs.begin(), blobs.mBlobs.end(),
                                        [](const auto& a, const auto& b) { return a.mField2 < b.mField2; });
    return found != blobs.mBlobs.end() ? &*found : nullptr;
}

}  // namespace

void Tracker::process(const Image& frame, double time) {
    const cv::Mat pixels = matView(frame);
    const double leastArea = LEAST_AREA * pixels.cols * pixels.rows;
    cv::Mat hsv;
    cv::cvtColor(pixels, hsv, cv::COLOR_RGB2HSV);
    if (mMotion) {
        mMotion->predict(time);
        mPredictedCentre = mMotion->centre();
    }
    mStillness.look(pixels, time);
    if (mFramesLearned < FRAMES_TO_LEARN)
        learn(hsv, leastArea);

    cv::Mat mask;
    mHand.mark(hsv, mask);
    mStillness.removeBackground(mask);
    tidy(mask);
    const Regions regions(mask, leastArea);
    mBlobs = regions.blobs();
    const Blobs::BlobInfo* hand = pick();
    const cv::Mat region = hand != nullptr ? regions.maskOf(*hand) : cv::Mat();
    mFound = hand != nullptr && !isBackground(region, time);
    if (hand != nullptr && !mFound)
        giveUp(region);
    if (!mFound) {
        miss(time);
        return;
    }
    mFramesMissed = 0;
    mLastSeen = time;
    mArea = hand->mField2;
    traceOutline(region, mOutline);
    if (mMotion) {
        mMotion->correct(boxOf(*hand));
    } else {
        mMotion.emplace(mOrder, pixels.cols);
        mMotion->start(boxOf(*hand), time);
        mPredictedCentre = mMotion->centre();
    }
}

/// Whether @p region, which would be the hand at @p time, has been still for too long to be one.
bool Tracker::isBackground(const cv::Mat& region, double time) {
    if (!mMotion) {  // a new track
        mHasMoved = false;
        mLastMoved = time;
    } else if (mStillness.moves(region)) {
        mHasMoved = true;
        mLastMoved = time;
    }
    return time - mLastMoved > (mHasMoved ? LONGEST_REST : LONGEST_STILLNESS);
}

/// Ends the track of what has turned out to be background.
void Tracker::giveUp(const cv::Mat& region) {
    mStillness.remember(region);
    mMotion.reset();
    if (!mHasMoved) {  // the colours learned are not a hand's
        mHand = HandModel();
        mFramesLearned = 0;
    }
}

/// Goes on without a hand in the frame at @p time.
void Tracker::miss(double time) {
    ++mFramesMissed;
    mOutline.clear();
    mOutline.mPoints.clear();
    if (mMotion && time - mLastSeen > LONGEST_ABSENCE)
        mMotion.reset();
    else if (mMotion)
        mMotion->keepSize();
}

/// Teaches the hand's colours, if the general model finds skin.
void Tracker::learn(const cv::Mat& hsv, double leastArea) {
    cv::Mat skin;
    mSkin.mark(hsv, skin);
    mStillness.removeBackground(skin);
    tidy(skin);
    const Regions regions(skin, leastArea);
    if (const Blobs::BlobInfo* region = largest(regions.blobs())) {
        mHand.learn(hsv, regions.maskOf(*region));
        ++mFramesLearned;
    }
}

/// The region that is taken for the hand: before the track has started the largest one, then the one nearest to the
/// prediction, if it lies within reach; null when there is none.
const Blobs::BlobInfo* Tracker::pick() const {
    if (!mMotion)
        return largest(mBlobs);
    const cv::Rect2d box = mMotion->box();
    double leastDistance = std::hypot(box.width, box.height) / 2 + mMotion->uncertainty();
    const double mostGrowth = MOST_GROWTH * (1 + mFramesMissed);
    const Blobs::BlobInfo* nearest = nullptr;
    for (const Blobs::BlobInfo& blob : mBlobs.mBlobs) {
        const double distance = cv::norm(centreOf(boxOf(blob)) - mPredictedCentre);
        if (distance <= leastDistance && blob.mField2 < mostGrowth * mArea && mArea < mostGrowth * blob.mField2) {
            leastDistance = distance;
            nearest = &blob;
        }
    }
    return nearest;
}

}  // namespace skin_tracker
