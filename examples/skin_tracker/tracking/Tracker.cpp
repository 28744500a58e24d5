#include "Tracker.h"

#include <opencv2/imgproc.hpp>
#include <tarvos/core/cvdata/MatView.h>

#include <cmath>

namespace skin_tracker {

namespace {

using tarvos::core::cvdata::Blobs;
using tarvos::core::cvdata::Image;

/// What has not moved for this long, in seconds, since it was first seen is not a hand; a hand that has moved may rest
/// longer.
constexpr double LONGEST_STILLNESS = 1.0;
constexpr double LONGEST_REST = 10.0;
/// A track ends after the hand was out of sight for this long, in seconds.
constexpr double LONGEST_ABSENCE = 2.0;
/// The least share of the picture that a hand covers.
constexpr double LEAST_AREA = 0.002;
/// The number of frames that teach the colours of the hand.
constexpr int FRAMES_TO_LEARN = 10;
/// The margin of the search around the hand, as a share of its extent.
constexpr double ROOM = 0.25;
/// How far, in pixels, tidy() lets pixels beyond an edge change the region: a little more than its larger kernel.
constexpr int CLOSED = 8;

/// Whether a region with the box @p box, found in the part @p area of the picture @p whole, may continue outside it.
bool reachesOut(const cv::Rect& box, const cv::Rect& area, const cv::Rect& whole) {
    const cv::Rect around(box.tl() - cv::Point(CLOSED, CLOSED), box.size() + cv::Size(2 * CLOSED, 2 * CLOSED));
    return ((around & whole) | area) != area;
}

}  // namespace

void Tracker::process(const Image& frame, double time) {
    const cv::Mat pixels = matView(frame);
    if (mMotion) {
        mMotion->predict(time);
        mPredictedCentre = mMotion->centre();
    }
    mStillness.add(pixels, time);
    if (mFramesLearned < FRAMES_TO_LEARN)
        learn(pixels);

    const cv::Rect whole({}, pixels.size());
    cv::Rect near = mFound ? neighbourhood() & whole : whole;
    if (near.empty())
        near = whole;
    Regions regions = regionsIn(pixels, near);
    const Blobs::BlobInfo* hand = pick(regions);
    if (near != whole && (hand == nullptr || reachesOut(boxOf(*hand), near, whole))) {
        regions = regionsIn(pixels, whole);
        hand = pick(regions);
    }
    mBlobs = regions.blobs();
    const cv::Mat region = hand != nullptr ? regions.maskOf(*hand, pixels.size()) : cv::Mat();
    mFound = hand != nullptr && !restsTooLong(region, time);
    if (hand != nullptr && !mFound)
        giveUp(region);
    if (!mFound) {
        miss(time);
        return;
    }
    mLastSeen = time;
    mArea = hand->mField2;
    regions.traceOutline(*hand, mOutline);
    if (mMotion) {
        mMotion->correct(boxOf(*hand));
    } else {
        mMotion.emplace(mOrder, pixels.cols);
        mMotion->start(boxOf(*hand), time);
        mPredictedCentre = mMotion->centre();
    }
}

/// The predicted box with a margin.
cv::Rect Tracker::neighbourhood() const {
    const cv::Rect2d box = mMotion->box();
    const cv::Size2d room(ROOM * box.width + mMotion->uncertainty(), ROOM * box.height + mMotion->uncertainty());
    return {cv::Point(box.tl() - cv::Point2d(room)), cv::Point(box.br() + cv::Point2d(room))};
}

/// The regions of the hand's colours in @p area of a frame.
Regions Tracker::regionsIn(const cv::Mat& pixels, const cv::Rect& area) const {
    cv::Mat mask = markColours(hueSaturationValue(pixels(area)), mHand.colours());
    return regionsOf(mask, area.tl());
}

/// The regions of @p mask, whose first pixel is at @p corner of the frame, without the known background.
Regions Tracker::regionsOf(cv::Mat& mask, const cv::Point& corner) const {
    mStillness.removeBackground(mask, corner);
    tidy(mask);
    return {mask, LEAST_AREA * mStillness.size().area(), corner};
}

/// Updates when the hand has moved, @p region being where it is at @p time. Whether it has been still for too long.
bool Tracker::restsTooLong(const cv::Mat& region, double time) {
    if (!mMotion) {  // a new track
        mHasMoved = false;
        mLastMoved = time;
    } else if (mStillness.moves(region)) {
        mHasMoved = true;
        mLastMoved = time;
    }
    return time - mLastMoved > (mHasMoved ? LONGEST_REST : LONGEST_STILLNESS);
}

/// Ends the track, @p region being background.
void Tracker::giveUp(const cv::Mat& region) {
    mStillness.remember(region);
    mMotion.reset();
    if (!mHasMoved) {  // the colours learned are not a hand's
        mHand = HandModel();
        mFramesLearned = 0;
    }
}

/// Continues without a hand in the frame at @p time.
void Tracker::miss(double time) {
    mOutline.clear();
    mOutline.mPoints.clear();
    if (mMotion && time - mLastSeen > LONGEST_ABSENCE)
        mMotion.reset();
    else if (mMotion)
        mMotion->keepSize();
}

/// Learns the hand's colours from the largest region of skin, its holes apart, if any.
void Tracker::learn(const cv::Mat& pixels) {
    const cv::Mat hsv = hueSaturationValue(pixels);
    cv::Mat skin = markColours(hsv, mSkin);
    const Regions regions = regionsOf(skin, {});
    if (const Blobs::BlobInfo* region = regions.largest()) {
        mHand.learn(hsv, skin & regions.maskOf(*region, pixels.size()));
        ++mFramesLearned;
    }
}

/// The region that is taken for the hand: without a track the largest one, otherwise the one nearest to the prediction
/// and within reach; null if there is none.
const Blobs::BlobInfo* Tracker::pick(const Regions& regions) const {
    if (!mMotion)
        return regions.largest();
    const cv::Rect2d box = mMotion->box();
    double leastDistance = std::hypot(box.width, box.height) / 2 + mMotion->uncertainty();
    const Blobs::BlobInfo* nearest = nullptr;
    for (const Blobs::BlobInfo& blob : regions.blobs().mBlobs) {
        const double distance = cv::norm(cv::Point2d(blob.mVector[0], blob.mVector[1]) - mPredictedCentre);
        if (distance <= leastDistance) {
            leastDistance = distance;
            nearest = &blob;
        }
    }
    return nearest;
}

}  // namespace skin_tracker
