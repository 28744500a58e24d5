#include "HandModel.h"

#include "Regions.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace skin_tracker {

namespace {

using tarvos::core::cvdata::ColourHist2d;

/// OpenCV's 8-bit hue counts in steps of two degrees.
constexpr int HUES = 180;
constexpr int HUE_BINS = 30;
constexpr int SATURATION_BINS = 32;
constexpr int VALUE_BINS = 16;
constexpr int PLANE = HUE_BINS * SATURATION_BINS;

/// The bins of pixels darker than 48 of 255: those have no colour to speak of, their hue and saturation are noise.
constexpr int DARK_BINS = 48 * VALUE_BINS / 256 * PLANE;
/// So often the colours found are looked for again; growth has ended by then.
constexpr int ROUNDS = 5;
/// The surroundings start this share of the known box's extent away from it.
constexpr double MARGIN = 0.15;

int binOf(const cv::Vec3b& hsv) {
    const int hue = std::min(hsv[0] * HUE_BINS / HUES, HUE_BINS - 1);
    return hue + HUE_BINS * (hsv[1] * SATURATION_BINS / 256) + PLANE * (hsv[2] * VALUE_BINS / 256);
}

void count(const cv::Mat& hsv, const cv::Mat& mask, ColourHist2d& histogram) {
    double* bins = histogram.data().data();
    auto counted = mask.begin<unsigned char>();
    for (auto colour = hsv.begin<cv::Vec3b>(); colour != hsv.end<cv::Vec3b>(); ++colour, ++counted)
        if (*counted != 0)
            bins[binOf(*colour)] += 1.0;
}

/// Half of each bin added to the next ones in all three directions: colours next to those seen are likely too.
ColourHist2d smooth(const ColourHist2d& histogram) {
    ColourHist2d smoothed = histogram;
    const tarvos::math::Vector& seen = histogram.data();
    tarvos::math::Vector& bins = smoothed.data();
    for (const int step : {1, HUE_BINS, PLANE}) {
        const int extent = step == 1 ? HUE_BINS : step == HUE_BINS ? SATURATION_BINS : VALUE_BINS;
        for (int bin = 0; bin < static_cast<int>(seen.dimension()); ++bin) {
            const int place = bin / step % extent;
            if (place + 1 < extent) {
                bins.data()[bin] += 0.5 * seen.data()[bin + step];
                bins.data()[bin + step] += 0.5 * seen.data()[bin];
            }
        }
    }
    return smoothed;
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
    : mHand(HUE_BINS, SATURATION_BINS, VALUE_BINS),
      mSurroundings(mHand),
      mOfHand(cv::Mat::zeros(1, PLANE * VALUE_BINS, CV_8UC1)) {}

void HandModel::learn(const cv::Mat& hsv, const cv::Mat& known) {
    cv::Mat hand = known.clone();
    ColourHist2d ofHand = mHand;
    ColourHist2d around = mSurroundings;
    for (int round = 0; round < ROUNDS; ++round) {
        ofHand = mHand;
        around = mSurroundings;
        count(hsv, hand, ofHand);
        count(hsv, surroundingsOf(hand), around);
        const ColourHist2d likely = smooth(ofHand);
        for (int bin = 0; bin < mOfHand.cols; ++bin)
            mOfHand.at<unsigned char>(bin) =
                bin >= DARK_BINS && likely.data().data()[bin] > around.data().data()[bin] ? 255 : 0;
        mark(hsv, hand);
        tidy(hand);
        keepRegionsTouching(known, hand);
        hand |= known;
    }
    mHand = ofHand;
    mSurroundings = around;
}

void HandModel::mark(const cv::Mat& hsv, cv::Mat& mask) const {
    mask.create(hsv.size(), CV_8UC1);
    std::transform(hsv.begin<cv::Vec3b>(), hsv.end<cv::Vec3b>(), mask.begin<unsigned char>(),
                   [ofHand = mOfHand.ptr<unsigned char>()](const cv::Vec3b& colour) { return ofHand[binOf(colour)]; });
}

}  // namespace skin_tracker
