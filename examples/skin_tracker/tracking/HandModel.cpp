#include "HandModel.h"

#include <opencv2/imgproc.hpp>
#include <tarvos/vision/Histogram.h>

namespace skin_tracker {

namespace {

using namespace tarvos::vision;

/// Of hue, saturation and value: coarse enough that a few frames show all colours of a hand.
constexpr int BINS[] = {20, 16, 8};
/// Bins of value below this one have no colour to speak of: hue and saturation are noise there.
constexpr unsigned int MIN_VALUE_BIN = 1;
/// A bin belongs to the hand unless its count around the hand is at least this many times the one in the hand: many,
/// since the surroundings are large, and since regions of like colours elsewhere do little harm to a track.
constexpr double FAVOUR = 25.0;
/// The surroundings start this share of the known box's extent away from it.
constexpr double MARGIN = 0.15;

cv::Mat toHsv(const cv::Mat& pixels) {
    cv::Mat hsv;
    cv::cvtColor(pixels, hsv, cv::COLOR_BGR2HSV);
    return hsv;
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

HandModel::HandModel() : mHand(BINS[0], BINS[1], BINS[2]), mSurroundings(mHand), mColours(mHand) {}

void HandModel::learn(const cv::Mat& pixels, const cv::Mat& known) {
    ++mFrames;
    const cv::Mat hsv = toHsv(pixels);
    addPixels(mHand, hsv, known, HSV_LIMITS);
    addPixels(mSurroundings, hsv, surroundingsOf(known), HSV_LIMITS);
    for (unsigned int i = 0; i < mColours.getBinsTotal(); ++i)
        mColours.data()[i] =
            i % BINS[2] >= MIN_VALUE_BIN && FAVOUR * mHand.data()[i] > mSurroundings.data()[i] ? 1.0 : 0.0;
}

cv::Mat HandModel::maskOf(const cv::Mat& pixels) const {
    return backProject(mColours, toHsv(pixels), HSV_LIMITS);
}

}  // namespace skin_tracker
