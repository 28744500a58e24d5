#include "Mosaic.h"
#include "Plot.h"
#include "Recorder.h"
#include "Stillness.h"
#include "Tracker.h"
#include "support/Files.h"
#include "support/Output.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <tarvos/core/cvdata/MatView.h>

#include <cmath>
#include <memory>

namespace skin_tracker {
namespace {

using tarvos::core::cvdata::Image;
using tarvos::core::cvdata::imageOf;
using tarvos::core::cvdata::VisContourSamplePts;

const cv::Size SIZE(320, 240);
const cv::Scalar SKIN(110, 143, 201), WALL(180, 175, 170);

/// A frame of wall with one thing in it.
cv::Mat scene(const cv::Rect& place, const cv::Scalar& colour) {
    cv::Mat frame(SIZE, CV_8UC3, WALL);
    frame(place).setTo(colour);
    return frame;
}

cv::Mat maskOf(const cv::Rect& place) {
    cv::Mat mask = cv::Mat::zeros(SIZE, CV_8U);
    mask(place).setTo(255);
    return mask;
}

/// A tracker that has seen a hand wander to the right for @p frames frames, 4 pixels each.
struct Tracked {
    explicit Tracked(int frames) {
        captureStdout([&] { tracker = std::make_unique<Tracker>(2); });
        for (int i = 0; i < frames; ++i)
            see(scene(cv::Rect(40 + 4 * i, 90, 60, 40), SKIN));
    }
    void see(const cv::Mat& frame) { tracker->process(imageOf(frame), time += 0.04); }
    void seeWall(int frames) {
        for (int i = 0; i < frames; ++i)
            see(cv::Mat(SIZE, CV_8UC3, WALL));
    }

    std::unique_ptr<Tracker> tracker;
    double time = 0.0;
};

cv::Mat hueSaturationValue(const cv::Mat& pixels) {
    cv::Mat hsv;
    cv::cvtColor(pixels, hsv, cv::COLOR_RGB2HSV);
    return hsv;
}

TEST(ColourModelTest, KnowsAnySkinAndLearnsTheColoursOfOneHand) {
    std::unique_ptr<SkinModel> skin;
    captureStdout([&] { skin = std::make_unique<SkinModel>(); });
    const cv::Rect place(40, 90, 60, 40);
    const cv::Mat gloved = hueSaturationValue(scene(place, cv::Scalar(150, 200, 120)));
    cv::Mat mask;
    skin->mark(hueSaturationValue(scene(place, SKIN)), mask);
    EXPECT_EQ(cv::countNonZero(mask), place.area());
    skin->mark(gloved, mask);
    EXPECT_EQ(cv::countNonZero(mask), 0);
    HandModel hand;
    hand.learn(gloved, maskOf({40, 90, 40, 40}));
    hand.mark(gloved, mask);
    EXPECT_EQ(cv::boundingRect(mask), place) << "grown from what was known";
    EXPECT_EQ(cv::countNonZero(mask), place.area());
}

TEST(RegionsTest, AreTidiedCountedAndTraced) {
    cv::Mat mask = maskOf({10, 20, 30, 40}) | maskOf({200, 100, 50, 50}) | maskOf({100, 100, 1, 1});
    mask(cv::Rect(20, 30, 3, 3)).setTo(0);
    tidy(mask);
    EXPECT_EQ(cv::countNonZero(mask), 30 * 40 + 50 * 50 - 8) << "a hole closed, a speck gone, corners rounded";
    const Regions regions(mask, 10, {1000, 0});
    ASSERT_EQ(regions.blobs().dimension(), 2U);
    const Regions::BlobInfo& region = *regions.largest();
    EXPECT_EQ(boxOf(region), cv::Rect(1200, 100, 50, 50));
    EXPECT_EQ(region.mField2, 50 * 50 - 4);
    EXPECT_EQ(region.mVector[0], 1225.0);
    EXPECT_EQ(cv::countNonZero(regions.maskOf(region, {1320, 240})), 50 * 50 - 4);
    VisContourSamplePts outline;
    for (int i = 0; i < 2; ++i)
        regions.traceOutline(region, outline);
    EXPECT_EQ(outline.mPoints.size(), 24U) << "every eighth of 192 pixels, once";
    EXPECT_EQ(outline.mEdges.back().mPointRefs.back(), &outline.mPoints.front()) << "it is closed";
    keepRegionsTouching(maskOf({35, 35, 20, 20}), mask);
    EXPECT_EQ(cv::boundingRect(mask), cv::Rect(10, 20, 30, 40));
}

TEST(StillnessTest, TellsWhatMovesAndForgetsWhatWasRemembered) {
    Stillness stillness;
    const cv::Rect moving(40, 40, 64, 64), still(200, 40, 64, 64);
    cv::Mat frame = scene(moving, SKIN);
    frame(still).setTo(SKIN);
    stillness.look(frame, 0.0);
    frame(moving).setTo(WALL);
    stillness.look(frame, 0.1);
    EXPECT_TRUE(stillness.moves(maskOf(moving)));
    EXPECT_FALSE(stillness.moves(maskOf(still)));
    for (int i = 2; i < 40; ++i)
        stillness.look(frame, 0.1 * i);
    EXPECT_FALSE(stillness.moves(maskOf(moving))) << "for seconds";
    stillness.remember(maskOf(still));
    cv::Mat mask(SIZE, CV_8U, cv::Scalar(255));
    stillness.removeBackground(mask, {});
    EXPECT_EQ(mask.at<unsigned char>(72, 232), 0);
    EXPECT_EQ(mask.at<unsigned char>(72, 72), 255);
    frame(still).setTo(cv::Scalar(0, 0, 255));
    stillness.look(frame, 4.0);
    mask.setTo(255);
    stillness.removeBackground(mask, {});
    EXPECT_EQ(mask.at<unsigned char>(72, 232), 255) << "it looks different now";
}

TEST(MotionFilterTest, PredictsByTheDerivativesOfItsOrder) {
    for (const int order : {2, 3}) {
        MotionFilter filter(order, 320);
        const auto boxAt = [&](double t) { return cv::Rect2d(50 * t + (order - 2) * 20 * t * t, 80, 40, 30 + 10 * t); };
        filter.start(boxAt(0.0), 0.0);
        for (int i = 1; i <= 50; ++i) {
            filter.predict(i * 0.04);
            filter.correct(boxAt(i * 0.04));
        }
        EXPECT_NEAR(filter.velocity().x, 50 + (order - 2) * 80, 3.0);
        filter.predict(2.4);
        EXPECT_NEAR(filter.box().x, boxAt(2.4).x, 4.0);
        EXPECT_NEAR(filter.box().height, 54, 2.0);
        const double before = filter.box().height;
        filter.keepSize();
        filter.predict(3.0);
        EXPECT_NEAR(filter.box().height, before, 1e-6);
    }
}

TEST(TrackerTest, FollowsAKnownMotionThroughAnOcclusionAndDrawsIt) {
    const TemporaryDirectory directory;
    const auto placeIn = [](int frame) {
        return cv::Point2d(160 + 90 * std::sin(0.06 * frame), 120 + 50 * std::sin(0.11 * frame));
    };
    Tracked hand(0);
    const Tracker& tracker = *hand.tracker;
    Recorder recorder("out", 0.0);
    for (int i = 0; i < 60; ++i) {
        const bool visible = i < 30 || i >= 38;
        cv::Mat frame = scene({20, 20, 60, 90}, cv::Scalar(200, 80, 60));
        cv::ellipse(frame, cv::Point(placeIn(i)), {34, 22}, 0, 0, 360, SKIN, cv::FILLED);
        if (!visible)
            cv::circle(frame, placeIn(i), 50, cv::Scalar(150, 150, 90), cv::FILLED);
        cv::Mat noise(SIZE, CV_16SC3);
        cv::randn(noise, 0, 4);
        cv::add(frame, noise, frame, cv::noArray(), CV_8UC3);
        hand.see(frame);
        EXPECT_EQ(tracker.found(), visible) << "frame " << i;
        ASSERT_TRUE(tracker.tracking());
        EXPECT_LT(cv::norm(tracker.motion().centre() - placeIn(i)), visible ? 6.0 : 30.0) << "frame " << i;
        const cv::Point2d velocity = (placeIn(i + 1) - placeIn(i - 1)) * 12.5;
        EXPECT_TRUE(i < 10 || !visible || cv::norm(tracker.motion().velocity() - velocity) < 40.0) << "frame " << i;
        Image drawn = imageOf(frame);
        recorder.add(i, hand.time, tracker, drawn);
    }
    recorder.publish();
    const cv::Mat mosaic = cv::imread("out/mosaic.png");
    EXPECT_EQ(mosaic.size(), cv::Size(4 * 320, 4 * 240 + 24)) << "with a legend";
    for (const cv::Scalar& colour :
         {cv::Scalar(255, 64, 0), {0, 220, 0}, {0, 0, 255}, {0, 220, 255}, {128, 128, 128}}) {
        cv::Mat drawn;
        cv::inRange(mosaic.rowRange(0, 4 * 240), colour, colour, drawn);
        EXPECT_GT(cv::countNonZero(drawn), 20) << "box, outline, prediction, trail, box out of sight: " << colour;
    }
}

TEST(TrackerTest, LooksNearTheHandAndEverywhereWhenItIsNotThere) {
    Tracked tracked(20);
    EXPECT_TRUE(tracked.tracker->found());
    EXPECT_EQ(cv::Rect(tracked.tracker->motion().box()).y, 90);
    cv::Mat frame = scene({44 + 76, 90, 60, 40}, SKIN);
    frame(cv::Rect(250, 10, 60, 40)).setTo(SKIN);
    tracked.see(frame);
    EXPECT_EQ(tracked.tracker->blobs().dimension(), 1U) << "the other one is far away";
    tracked.see(scene({48 + 76, 90, 150, 40}, SKIN));
    EXPECT_EQ(tracked.tracker->area(), 150 * 40 - 4) << "what reaches out of the neighbourhood is seen whole";
    tracked.seeWall(1);
    const cv::Rect box = tracked.tracker->motion().box();
    tracked.seeWall(48);
    ASSERT_TRUE(tracked.tracker->tracking());
    EXPECT_FALSE(tracked.tracker->found());
    EXPECT_TRUE(tracked.tracker->outline().mPoints.empty());
    EXPECT_EQ(cv::Rect(tracked.tracker->motion().box()).size(), box.size()) << "out of sight it keeps its size";
    tracked.seeWall(2);
    EXPECT_FALSE(tracked.tracker->tracking()) << "for two seconds";
}

TEST(TrackerTest, GivesUpWhatNeverMovesButKeepsAHandThatRests) {
    Tracked resting(20), still(0);
    for (int i = 0; i < 100; ++i) {
        resting.see(scene({40 + 76, 90, 60, 40}, SKIN));
        EXPECT_TRUE(resting.tracker->found());
        still.see(scene({200, 20, 60, 40}, SKIN));
        EXPECT_EQ(still.tracker->found(), i < 25) << i;
    }
    still.see(scene({40, 150, 60, 40}, SKIN));
    EXPECT_TRUE(still.tracker->found()) << "another place";
}

TEST(MosaicTest, SpreadsSixteenFramesEvenly) {
    Mosaic mosaic;
    for (int i = 0; i < 400; ++i)
        mosaic.add(imageOf(cv::Mat(SIZE, CV_8UC3, cv::Scalar::all(i / 2))), "");
    const auto composed = mosaic.compose();
    for (int cell = 0; cell < 16; ++cell) {
        const cv::Vec3b pixel = matView(composed).at<cv::Vec3b>(240 * (cell / 4) + 120, 320 * (cell % 4) + 160);
        EXPECT_NEAR(pixel[0], cell * 199 / 15, 6) << "cell " << cell;
    }
}

TEST(PlotTest, DrawsTheTrackAndShadesWhereThereIsNone) {
    Tracked tracked(1);
    Plot plot;
    for (int i = 0; i < 100; ++i) {
        tracked.see(i < 20 ? scene(cv::Rect(40 + 4 * i, 90, 60, 40), SKIN) : scene({0, 0, 1, 1}, WALL));
        plot.add(tracked.time, *tracked.tracker, SIZE);
    }
    const Image picture = plot.draw();
    const auto at = [&](int x, int y) { return matView(picture).at<cv::Vec3b>(y, x); };
    EXPECT_EQ(at(50, 50), cv::Vec3b(255, 255, 255));
    EXPECT_EQ(at(600, 50), cv::Vec3b(170, 220, 255)) << "predicted";
    EXPECT_EQ(at(1200, 50), cv::Vec3b(200, 200, 200)) << "lost";
    cv::Mat dots;  // darker where the paper is
    cv::inRange(matView(picture)(cv::Rect(0, 300, 1280, 300)), cv::Scalar(170, 64, 0), cv::Scalar(255, 64, 0), dots);
    EXPECT_NEAR(cv::boundingRect(dots).br().x, 1280 * 69 / 99, 14);
}

}  // namespace
}  // namespace skin_tracker
