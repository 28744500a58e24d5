/// @file
/// How long the tracker of skin_tracker takes for a frame of the real video, decoding apart, beside OpenCV's CamShift
/// with the conversion and the back-projection that it needs.

#include "Compare.h"
#include "tracking/Tracker.h"

#include <opencv2/imgproc.hpp>
#include <opencv2/video/tracking.hpp>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/video/FrameSource.h>

#include <memory>
#include <stdexcept>
#include <vector>

namespace {

using tarvos::core::cvdata::Image;

constexpr int FRAMES = 60;

/// Hands out the first frames of the video, forward and back so that the motion has no jump.
class Frames {
public:
    explicit Frames(cv::Size size) {
        const auto source = tarvos::video::FrameSource::open(HAND_VIDEO);
        Image frame;
        while (mFrames.size() < FRAMES && source->read(frame)) {
            mFrames.emplace_back(size.width, size.height, Image::CHANNELS_BGR, Image::BITS_8U);
            cv::Mat pixels = matView(mFrames.back());
            cv::resize(matView(frame), pixels, size, 0, 0, cv::INTER_CUBIC);
        }
    }
    const Image& next() {
        const std::size_t place = mNext++ % (2 * mFrames.size() - 2);
        return mFrames[place < mFrames.size() ? place : 2 * mFrames.size() - 2 - place];
    }
    double time() const { return static_cast<double>(mNext) / 25.0; }

private:
    std::vector<Image> mFrames;
    std::size_t mNext = 0;
};

/// The tracker, which has learned the colours.
class Tracked {
public:
    explicit Tracked(Frames& frames) : mFrames(frames) {
        for (int i = 0; i < FRAMES; ++i)
            process();
    }
    bool process() {
        const Image& frame = mFrames.next();
        mTracker.process(frame, mFrames.time());
        if (!mTracker.found())
            throw std::runtime_error("the hand was lost");
        return true;
    }
    cv::Rect box() const { return mTracker.motion().box(); }

private:
    Frames& mFrames;
    skin_tracker::Tracker mTracker{2};
};

/// CamShift as OpenCV's example runs it: by the hues in the box where it starts, without pale and dark pixels.
class CamShift {
public:
    CamShift(Frames& frames, const cv::Rect& box) : mFrames(frames), mBox(box) {
        convert();
        mBox &= cv::Rect({}, mHue.size());
        const cv::Mat hue = mHue(mBox);
        cv::calcHist(&hue, 1, &CHANNEL, mColoured(mBox), mHistogram, 1, &BINS, &mHues);
        cv::normalize(mHistogram, mHistogram, 0, 255, cv::NORM_MINMAX);
    }
    int process() {
        convert();
        cv::calcBackProject(&mHue, 1, &CHANNEL, mHistogram, mLikely, &mHues);
        mLikely &= mColoured;
        cv::CamShift(mLikely, mBox, cv::TermCriteria(cv::TermCriteria::EPS | cv::TermCriteria::COUNT, 10, 1));
        if (mBox.area() <= 1)
            throw std::runtime_error("CamShift has lost the hand");
        return mBox.area();
    }

private:
    static constexpr int CHANNEL = 0;
    static constexpr int BINS = 16;
    static constexpr float RANGE[] = {0, 180};
    const float* mHues = RANGE;

    Frames& mFrames;
    cv::Rect mBox;
    cv::Mat mHsv, mHue, mColoured, mHistogram, mLikely;

    void convert() {
        cv::cvtColor(matView(mFrames.next()), mHsv, cv::COLOR_BGR2HSV);
        cv::inRange(mHsv, cv::Scalar(0, 30, 10), cv::Scalar(180, 256, 256), mColoured);
        cv::extractChannel(mHsv, mHue, CHANNEL);
    }
};

void compareAt(const cv::Size& size) {
    const auto frames = std::make_shared<Frames>(size);
    const auto tracked = std::make_shared<Tracked>(*frames);
    const auto camShift = std::make_shared<CamShift>(*frames, tracked->box());
    compare(
        cv::format("Tracker on a frame of %dx%d", size.width, size.height), "cv::CamShift",
        [=, keptAlive = frames] { return tracked->process(); },
        [=, keptAlive = frames] { return camShift->process(); });
}

}  // namespace

int main(int argc, char** argv) {
    compareAt({640, 480});
    compareAt({1920, 1440});
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
