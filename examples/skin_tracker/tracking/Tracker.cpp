#include "Tracker.h"

#include <opencv2/imgproc.hpp>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/vision/Mixture.h>

#include <cmath>

namespace skin_tracker {

namespace {

using tarvos::core::cvdata::Image;
using namespace tarvos::vision;

/// What has not moved for this long, in seconds, since it was first seen is not a hand; a hand that has moved may rest
/// longer.
constexpr double MAX_STILLNESS = 1.0;
constexpr double MAX_REST = 10.0;
/// A track ends after the hand was out of sight for this long, in seconds.
constexpr double MAX_ABSENCE = 2.0;
/// The smallest share of the picture that a hand covers.
constexpr double MIN_AREA = 0.002;
/// The number of frames that teach the colours of the hand.
constexpr int FRAMES_TO_LEARN = 10;
/// The margin of the search around the hand, as a share of its extent.
constexpr double ROOM = 0.25;
/// The margin, in pixels, in which tidy() is affected by what lies beyond an edge: a little more than its larger
/// kernel.
constexpr int TIDY_MARGIN = 8;

/// Removes specks from @p mask (8-bit, one channel, 0 and 255) and closes small holes.
void tidy(cv::Mat& mask) {
    static const cv::Mat speck = cv::getStructuringElement(cv::MORPH_ELLIPSE, cv::Size(3, 3));
    static const cv::Mat hole = cv::getStructuringElement(cv::MORPH_ELLIPSE, cv::Size(7, 7));
    cv::morphologyEx(mask, mask, cv::MORPH_OPEN, speck);
    cv::morphologyEx(mask, mask, cv::MORPH_CLOSE, hole);
}

/// Whether a region with the box @p box, found in the part @p area of the picture @p whole, may continue outside it.
bool reachesOut(const cv::Rect& box, const cv::Rect& area, const cv::Rect& whole) {
    const cv::Rect around(box.tl() - cv::Point(TIDY_MARGIN, TIDY_MARGIN),
                          box.size() + cv::Size(2 * TIDY_MARGIN, 2 * TIDY_MARGIN));
    return ((around & whole) | area) != area;
}

}  // namespace

void Tracker::process(const Image& frame, double time) {
    const cv::Mat pixels = matView(frame);
    predict(time);
    mBackground.add(pixels, time);
    if (mHand.framesLearned() < FRAMES_TO_LEARN)
        learn(pixels);
    const Regions regions = search(pixels);
    mBlobs = regions.blobs();
    const Region* hand = pick(regions);
    const cv::Mat mask = hand != nullptr ? regions.maskOf(*hand, pixels.size()) : cv::Mat();
    mFound = hand != nullptr && !restsTooLong(mask, time);
    if (mFound) {
        regions.traceOutline(*hand, mOutline);
        follow(*hand, pixels.cols, time);
        return;
    }
    if (hand != nullptr)
        giveUp(mask);
    miss(time);
}

void Tracker::predict(double time) {
    if (!mMotion)
        return;
    mMotion->predict(time);
    mPredictedCentre = mMotion->centre();
}

/// Learns the hand's colours from the largest region of skin, its holes apart, if any.
void Tracker::learn(const cv::Mat& pixels) {
    cv::Mat skin = skinMask(pixels);
    const Regions regions = regionsOf(skin, {});
    if (const Region* region = regions.largest())
        mHand.learn(pixels, skin & regions.maskOf(*region, pixels.size()));
}

/// The regions of the hand's colours: near the hand if it was there in the last frame and still is, or else all.
Regions Tracker::search(const cv::Mat& pixels) {
    const cv::Rect whole({}, pixels.size());
    const cv::Rect near = mFound ? neighbourhood(whole) : whole;
    if (near != whole) {
        Regions regions = regionsIn(pixels, near);
        const Region* hand = pick(regions);
        if (hand != nullptr && !reachesOut(boxOf(*hand), near, whole))
            return regions;
    }
    return regionsIn(pixels, whole);
}

/// The part of the frame in the predicted box with a margin; all of it if there is none.
cv::Rect Tracker::neighbourhood(const cv::Rect& frame) const {
    const cv::Rect2d box = mMotion->box();
    const cv::Size2d room(ROOM * box.width + mMotion->uncertainty(), ROOM * box.height + mMotion->uncertainty());
    const cv::Rect near(cv::Point(box.tl() - cv::Point2d(room)), cv::Point(box.br() + cv::Point2d(room)));
    return (near & frame).empty() ? frame : near & frame;
}

/// The regions of the hand's colours in @p area of a frame.
Regions Tracker::regionsIn(const cv::Mat& pixels, const cv::Rect& area) const {
    cv::Mat mask = mHand.maskOf(pixels(area));
    return regionsOf(mask, area.tl());
}

/// The regions of @p mask, whose first pixel is at @p corner of the frame, without the known background.
Regions Tracker::regionsOf(cv::Mat& mask, const cv::Point& corner) const {
    mBackground.removeBackground(mask, corner);
    tidy(mask);
    return {mask, MIN_AREA * mBackground.size().area(), corner};
}

/// The region that is taken for the hand: without a track the largest one, otherwise the one nearest to the prediction
/// and within reach; null if there is none.
const Tracker::Region* Tracker::pick(const Regions& regions) const {
    if (!mMotion)
        return regions.largest();
    const cv::Rect2d box = mMotion->box();
    double reach = std::hypot(box.width, box.height) / 2 + mMotion->uncertainty();
    const Region* nearest = nullptr;
    for (const Region& region : regions.blobs().mBlobs) {
        const double distance = cv::norm(cv::Point2d(region.mVector[0], region.mVector[1]) - mPredictedCentre);
        if (distance <= reach) {
            reach = distance;
            nearest = &region;
        }
    }
    return nearest;
}

/// Notes when the hand, whose pixels are @p hand, has moved. Whether it has been still for too long.
bool Tracker::restsTooLong(const cv::Mat& hand, double time) {
    if (!mMotion) {  // a new track
        mHasMoved = false;
        mLastMoved = time;
    } else if (mBackground.moves(hand)) {
        mHasMoved = true;
        mLastMoved = time;
    }
    return time - mLastMoved > (mHasMoved ? MAX_REST : MAX_STILLNESS);
}

/// Ends the track: what it followed, the pixels of @p hand, is background.
void Tracker::giveUp(const cv::Mat& hand) {
    mBackground.remember(hand);
    mMotion.reset();
    if (!mHasMoved)  // the colours learned are not a hand's
        mHand = HandModel();
}

/// Continues or begins the track with the hand found.
void Tracker::follow(const Region& hand, int pictureWidth, double time) {
    mLastSeen = time;
    mArea = hand.mField2;
    if (mMotion) {
        mMotion->correct(boxOf(hand));
    } else {
        mMotion.emplace(mOrder, pictureWidth, boxOf(hand), time);
        mPredictedCentre = mMotion->centre();
    }
}

/// Continues without a hand in the frame.
void Tracker::miss(double time) {
    mOutline.clear();
    mOutline.mPoints.clear();
    if (mMotion && time - mLastSeen > MAX_ABSENCE)
        mMotion.reset();
    else if (mMotion)
        mMotion->keepSize();
}

}  // namespace skin_tracker
