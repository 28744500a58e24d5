#include "HandModel.h"

#include "Colours.h"

#include <opencv2/imgproc.hpp>

namespace skin_tracker {

namespace {

using tarvos::core::cvdata::ColourHist2d;

/// Of hue, saturation and value: coarse enough that a few frames show all colours of a hand.
constexpr int BINS[] = {20, 16, 8};
/// Pixels darker than this have no colour to speak of: their hue and saturation are noise.
constexpr int DARK = 32;
/// A colour is the hand's unless its surroundings have more than so many times as many pixels of it: they are much
/// larger, and of the regions with the hand's colours the one nearest to where it should be is taken.
constexpr double FAVOUR = 25.0;
/// The surroundings start this share of the known box's extent away from it.
constexpr double MARGIN = 0.15;

/// A view of the entries of @p histogram for OpenCV.
cv::Mat entriesOf(ColourHist2d& histogram) {
    return {3, BINS, CV_64F, histogram.data().data()};
}

/// Everything outside the box around @p hand, widened by the margin.
cv::Mat surroundingsOf(const cv::Mat& hand) {
    const cv::Rect box = cv::boundingRect(hand);
    const cv::Size margin(cvRound(box.width * MARGIN), cvRound(box.height * MARGIN));
    cv::Mat surroundings(hand.size(), CV_8UC1, cv::Scalar(255));
    surroundings((box - cv::Point(margin) + margin + margin) & cv::Rect({}, hand.size())).setTo(0);
    return surroundings;
}

}  // namespace

HandModel::HandModel()
    : mHand(BINS[0], BINS[1], BINS[2]), mSurroundings(mHand), mColours(3, BINS, CV_32F, cv::Scalar(0)) {}

void HandModel::learn(const cv::Mat& hsv, const cv::Mat& known) {
    cv::Mat hand = entriesOf(mHand);
    cv::Mat surroundings = entriesOf(mSurroundings);
    countColours(hsv, known, hand);
    countColours(hsv, surroundingsOf(known), surroundings);
    const cv::Mat likely = FAVOUR * hand > surroundings;
    likely.convertTo(mColours, CV_32F);
    const cv::Range dark[] = {cv::Range::all(), cv::Range::all(), {0, DARK * BINS[2] / LEVELS}};
    mColours(dark).setTo(0.0F);
}

}  // namespace skin_tracker
