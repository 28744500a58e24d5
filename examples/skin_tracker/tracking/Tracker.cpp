#include "Tracker.h"

#include <opencv2/imgproc.hpp>
#include <tarvos/core/cvdata/MatView.h>

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
/// While the hand is seen, the next frame is looked at in this share of its extent around it.
constexpr double ROOM = 0.25;
/// tidy() closes holes up to so many pixels wide, so that what is beyond an edge makes itself felt so far.
constexpr int CLOSED = 8;

/// Whether something that ends at the sides of @p area may go on beyond, in what the picture @p whole has there.
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
    mStillness.look(pixels, time);
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
    mFound = hand != nullptr && !isBackground(region, time);
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

/// Where the hand should be, with room around it.
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

/// The regions of @p mask, whose first pixel lies at @p corner of the frame, but for those that are known not to be the
/// hand.
Regions Tracker::regionsOf(cv::Mat& mask, const cv::Point& corner) const {
    mStillness.removeBackground(mask, corner);
    tidy(mask);
    return {mask, LEAST_AREA * mStillness.size().area(), corner};
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
    mOutline.clear();
    mOutline.mPoints.clear();
    if (mMotion && time - mLastSeen > LONGEST_ABSENCE)
        mMotion.reset();
    else if (mMotion)
        mMotion->keepSize();
}

/// Teaches the hand's colours, if the general model finds skin.
void Tracker::learn(const cv::Mat& pixels) {
    const cv::Mat hsv = hueSaturationValue(pixels);
    cv::Mat skin = markColours(hsv, mSkin);
    const Regions regions = regionsOf(skin, {});
    if (const Blobs::BlobInfo* region = regions.largest()) {
        mHand.learn(hsv, regions.maskOf(*region, pixels.size()));
        ++mFramesLearned;
    }
}

/// The region that is taken for the hand: before the track has started the largest one, then the one nearest to the
/// prediction, if it lies within reach; null when there is none.
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
