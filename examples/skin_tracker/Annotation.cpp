#include "Annotation.h"

#include <opencv2/imgproc.hpp>
#include <tarvos/core/cvdata/MatView.h>

#include <utility>

namespace skin_tracker {

namespace {

constexpr std::size_t TRAIL_LENGTH = 30;  // frames

const cv::Scalar BLUE(255, 64, 0);
const cv::Scalar GREEN(0, 220, 0);
const cv::Scalar YELLOW(0, 220, 255);
const cv::Scalar RED(0, 0, 255);
const cv::Scalar GREY(128, 128, 128);

cv::Point pixel(const tarvos::math::Vector4& sample) {
    return {cvRound(sample[0]), cvRound(sample[1])};
}

}  // namespace

void Annotation::draw(const Tracker& tracker, tarvos::core::cvdata::Image& frame) {
    if (!tracker.tracking()) {
        mTrail.clear();
        return;
    }
    mTrail.emplace_back(tracker.motion().centre());
    if (mTrail.size() > TRAIL_LENGTH)
        mTrail.pop_front();
    cv::Mat pixels = matView(frame);
    for (const auto& edge : tracker.outline().mEdges)
        cv::line(pixels, pixel(edge.mPointRefs.front()->mVec4), pixel(edge.mPointRefs.back()->mVec4), GREEN, 2);
    for (std::size_t i = 1; i < mTrail.size(); ++i)
        cv::line(pixels, mTrail[i - 1], mTrail[i], YELLOW, 2);
    cv::rectangle(pixels, cv::Rect(tracker.motion().box()), tracker.found() ? BLUE : GREY, 2);
    cv::drawMarker(pixels, cv::Point(tracker.predictedCentre()), RED, cv::MARKER_CROSS, 20, 2);
}

cv::Mat Annotation::legend(int width) {
    const std::pair<const char*, cv::Scalar> meanings[] = {{"hand's outline", GREEN},
                                                           {"its box", BLUE},
                                                           {"box while out of sight", GREY},
                                                           {"where its centre was expected", RED},
                                                           {"its last centres", YELLOW}};
    cv::Mat line(24, width, CV_8UC3, cv::Scalar::all(0));
    cv::Point place(6, 16);
    for (const auto& [text, colour] : meanings) {
        cv::putText(line, text, place, cv::FONT_HERSHEY_SIMPLEX, 0.45, colour, 1, cv::LINE_AA);
        place.x += 16 + cv::getTextSize(text, cv::FONT_HERSHEY_SIMPLEX, 0.45, 1, nullptr).width;
    }
    return line;
}

}  // namespace skin_tracker
