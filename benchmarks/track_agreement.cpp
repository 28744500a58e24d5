/// @file
/// Tracks a video and compares the track with an independent rule for skin, `track_agreement VIDEO`: in how many frames
/// the tracked box overlaps the box of the visible skin, and how often the tracked centre leaves it. Fails below the
/// goal: an intersection over union of 0.7 in 90 % of the frames, and no centre outside.

#include "tracking/Tracker.h"

#include <opencv2/imgproc.hpp>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/video/FrameSource.h>
#include <tarvos/vision/Regions.h>

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <string>

namespace {

using tarvos::core::cvdata::Image;

constexpr double GOOD_OVERLAP = 0.7;
constexpr double GOOD_SHARE = 0.9;

/// The box of the largest region of skin by a rule of thumb on chrominance that the tracker does not use.
cv::Rect visibleSkin(const Image& frame) {
    cv::Mat chrominance;
    cv::Mat mask;
    cv::cvtColor(matView(frame), chrominance, cv::COLOR_BGR2YCrCb);
    cv::inRange(chrominance, cv::Scalar(0, 135, 85), cv::Scalar(255, 180, 135), mask);
    cv::morphologyEx(mask, mask, cv::MORPH_OPEN, cv::getStructuringElement(cv::MORPH_ELLIPSE, cv::Size(5, 5)));
    const tarvos::vision::Regions regions(mask, 0.0);
    return regions.largest() != nullptr ? tarvos::vision::boxOf(*regions.largest()) : cv::Rect();
}

int compare(const std::string& video) {
    const auto source = tarvos::video::FrameSource::open(video);
    skin_tracker::Tracker tracker(2);
    int frames = 0, good = 0, outside = 0;
    double worst = 1.0, sum = 0.0;
    for (Image frame; source->read(frame); ++frames) {
        tracker.process(frame, frames / source->frameRate());
        const cv::Rect2d skin = visibleSkin(frame);
        const cv::Rect2d box = tracker.tracking() ? tracker.motion().box() : cv::Rect2d();
        const double overlap = (skin & box).area() / (skin.area() + box.area() - (skin & box).area());
        good += overlap >= GOOD_OVERLAP ? 1 : 0;
        outside += skin.contains((box.tl() + box.br()) / 2) ? 0 : 1;
        worst = std::min(worst, overlap);
        sum += overlap;
    }
    std::cout << "frames: " << frames << "\nintersection over union at least " << GOOD_OVERLAP << ": "
              << 100.0 * good / frames << " % of the frames\nmean intersection over union: " << sum / frames
              << "\nleast intersection over union: " << worst << "\nframes with the centre outside: " << outside
              << std::endl;
    return good >= GOOD_SHARE * frames && outside == 0 && frames > 0 ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2 || !std::filesystem::exists(argv[1])) {
        std::cerr << "usage: track_agreement VIDEO, see scripts/fetch-video" << std::endl;
        return 77;  // a test that is skipped
    }
    return compare(argv[1]);
}
