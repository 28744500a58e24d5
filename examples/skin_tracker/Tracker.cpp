#include "Tracker.h"

#include "Regions.h"

#include <opencv2/core/core_c.h>
#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>

namespace skin_tracker {

namespace {

using tarvos::core::cvdata::Blobs;
using tarvos::core::cvdata::Image;

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
    const cv::Mat pixels = cv::cvarrToMat(frame.iplImage());
    const double leastArea = LEAST_AREA * pixels.cols * pixels.rows;
    cv::Mat hsv;
    cv::cvtColor(pixels, hsv, cv::COLOR_RGB2HSV);
    if (mMotion) {
        mMotion->predict(time);
        mPredictedCentre = mMotion->centre();
    }
    if (mFramesLearned < FRAMES_TO_LEARN)
        learn(hsv, leastArea);

    cv::Mat mask;
    mHand.mark(hsv, mask);
    tidy(mask);
    const Regions regions(mask, leastArea);
    mBlobs = regions.blobs();
    const Blobs::BlobInfo* hand = pick();
    mFound = hand != nullptr;
    mFramesMissed = mFound ? 0 : mFramesMissed + 1;
    if (!mFound) {
        mOutline.clear();
        mOutline.mPoints.clear();
        return;
    }
    mArea = hand->mField2;
    traceOutline(regions.maskOf(*hand), mOutline);
    if (mMotion) {
        mMotion->correct(boxOf(*hand));
    } else {
        mMotion.emplace(mOrder, pixels.cols);
        mMotion->start(boxOf(*hand), time);
        mPredictedCentre = mMotion->centre();
    }
}

/// Teaches the hand's colours, if the general model finds skin.
void Tracker::learn(const cv::Mat& hsv, double leastArea) {
    cv::Mat skin;
    mSkin.mark(hsv, skin);
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
