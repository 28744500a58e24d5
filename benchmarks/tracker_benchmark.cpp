/// @file
/// How many frames a second the tracker of skin_tracker handles, decoding apart: 640 x 480 frames held in memory, a
/// skin-coloured ellipse in motion over grey noise. Beside it the least that any tracker by colour does: the
/// conversion to hue, saturation and value.

#include "Comparison.h"
#include "Tracker.h"

#include <opencv2/imgproc.hpp>
#include <tarvos/core/cvdata/MatView.h>

#include <cstdlib>
#include <iostream>
#include <memory>
#include <vector>

namespace {

using tarvos::core::cvdata::Image;

constexpr double FRAME_RATE = 26.8;

std::vector<Image> sequence() {
    std::vector<Image> frames;
    for (int i = 0; i < 60; ++i) {
        frames.emplace_back(640, 480, Image::CHANNELS_BGR, Image::BITS_8U);
        cv::Mat pixels = matView(frames.back());
        cv::randu(pixels, 150, 180);
        cv::ellipse(pixels, {320 + 3 * (i - 30), 240 + 2 * (i - 30)}, {90, 60}, 30, 0, 360, {110, 143, 201},
                    cv::FILLED);
    }
    return frames;
}

/// Hands out the frames forward and back, so that the motion has no jump.
class Frames {
public:
    const Image& next() {
        const std::size_t place = mNext++ % (2 * mFrames.size() - 2);
        return mFrames[place < mFrames.size() ? place : 2 * mFrames.size() - 2 - place];
    }
    double time() const { return static_cast<double>(mNext) / FRAME_RATE; }

private:
    std::vector<Image> mFrames = sequence();
    std::size_t mNext = 0;
};

/// A tracker that has learned the colours.
class Tracked {
public:
    Tracked() {
        for (int i = 0; i < 20; ++i)
            process();
    }
    void process() {
        mTracker.process(mFrames.next(), mFrames.time());
        if (!mTracker.found())
            std::abort();
    }

private:
    Frames mFrames;
    skin_tracker::Tracker mTracker{2};
};

}  // namespace

int main(int argc, char** argv) {
    std::cout.setstate(std::ios_base::badbit);  // the skin model prints
    const auto tracked = std::make_shared<Tracked>();
    const auto frames = std::make_shared<Frames>();
    const auto hsv = std::make_shared<cv::Mat>();
    comparison::compare(
        "Tracker, a frame of 640x480", "its conversion to HSV", 0.0, [=] { tracked->process(); },
        [=] { cv::cvtColor(matView(frames->next()), *hsv, cv::COLOR_RGB2HSV); });
    return comparison::run(argc, argv);
}
