#include "Annotation.h"
#include "Mosaic.h"
#include "Results.h"
#include "support/Files.h"
#include "tracking/Tracker.h"

#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>
#include <tarvos/core/cvdata/MatView.h>

namespace skin_tracker {
namespace {

using tarvos::core::cvdata::Image;
using tarvos::core::cvdata::imageOf;

const cv::Size SIZE(320, 240);
const cv::Scalar SKIN(110, 143, 201), WALL(180, 175, 170);

/// A frame of wall with one thing in it.
cv::Mat scene(const cv::Rect& place, const cv::Scalar& colour) {
    cv::Mat frame(SIZE, CV_8UC3, WALL);
    frame(place).setTo(colour);
    return frame;
}

/// A hand that wanders to the right by 4 pixels a frame.
cv::Mat handScene(int frame) {
    return scene({40 + 4 * frame, 90, 60, 40}, SKIN);
}

/// A tracker that has seen the hand for @p frames frames.
struct Tracked {
    explicit Tracked(int frames) {
        for (int i = 0; i < frames; ++i)
            see(handScene(i));
    }
    void see(const cv::Mat& frame) { tracker.process(imageOf(frame), time += 0.04); }
    void seeWall(int frames) {
        for (int i = 0; i < frames; ++i)
            see(cv::Mat(SIZE, CV_8UC3, WALL));
    }

    Tracker tracker{2};
    double time = 0.0;
};

TEST(HandModelTest, LeavesOutDarkPixelsAndColoursMostlyOutsideTheHand) {
    const cv::Rect place(40, 90, 60, 40);
    cv::Mat frame = scene(place, SKIN), known = cv::Mat::zeros(SIZE, CV_8U);
    known(place).setTo(255);
    frame(cv::Rect(40, 90, 20, 40)).setTo(cv::Scalar(15, 21, 30));  // the hand's shadowed part, of its hue
    frame(cv::Rect(60, 90, 2, 40)).setTo(WALL);
    for (const cv::Rect& dab : {cv::Rect(70, 84, 15, 6), cv::Rect(70, 90, 1, 2)})  // close: not counted as around
        frame(dab).setTo(cv::Scalar(0, 200, 0));
    for (const cv::Rect& dab : {cv::Rect(112, 100, 15, 6), cv::Rect(80, 90, 1, 2)})  // farther: counted
        frame(dab).setTo(cv::Scalar(200, 0, 0));
    HandModel hand;
    hand.learn(frame, known);
    EXPECT_EQ(cv::boundingRect(hand.maskOf(frame)), cv::Rect(62, 84, 38, 46));
}

TEST(TrackerTest, LooksNearTheHandAndEverywhereWhenItIsNotThere) {
    Tracked tracked(20);
    cv::Mat frame = scene({44 + 76, 90, 60, 40}, SKIN);
    frame(cv::Rect(250, 10, 60, 40)).setTo(SKIN);
    tracked.see(frame);
    EXPECT_EQ(tracked.tracker.blobs().dimension(), 1U) << "the patch far away is not looked at";
    tracked.see(scene({48 + 76, 90, 150, 40}, SKIN));
    EXPECT_EQ(tracked.tracker.area(), 150 * 40 - 4) << "what reaches out is seen whole, but for smoothed corners";
    tracked.seeWall(1);
    const cv::Rect box = tracked.tracker.motion().box();
    tracked.seeWall(48);
    ASSERT_TRUE(tracked.tracker.tracking());
    EXPECT_FALSE(tracked.tracker.found());
    EXPECT_TRUE(tracked.tracker.outline().mPoints.empty() && tracked.tracker.outline().mEdges.empty());
    EXPECT_EQ(cv::Rect(tracked.tracker.motion().box()).size(), box.size()) << "out of sight it keeps its size";
    tracked.seeWall(2);
    EXPECT_FALSE(tracked.tracker.tracking()) << "a track ends after two seconds out of sight";
}

TEST(TrackerTest, GivesUpWhatNeverMovesAndAHandThatRestsForTenSeconds) {
    Tracked resting(20), still(0);
    const cv::Rect elsewhere(40, 180, 50, 40);
    cv::Mat frame = handScene(19);
    frame(elsewhere).setTo(SKIN);
    for (int i = 0; i < 360; ++i) {
        resting.see(frame);
        ASSERT_TRUE(resting.tracker.found() || i > 250) << "resting, frame " << i;
        still.see(scene({200, 20, 60, 40}, SKIN));
        ASSERT_EQ(still.tracker.tracking(), i < 25) << "still, frame " << i;
    }
    EXPECT_FALSE(resting.tracker.found()) << "nor is the patch that has never moved taken for it";
    frame = scene({200, 20, 60, 40}, SKIN);
    frame(elsewhere).setTo(cv::Scalar(70, 95, 150));
    still.see(frame);
    EXPECT_TRUE(still.tracker.found()) << "another place, and other colours, which are learned anew";
}

/// What @p annotation draws of @p tracker into a black frame.
cv::Mat drawnBy(Annotation& annotation, const Tracker& tracker) {
    Image frame = imageOf(cv::Mat::zeros(SIZE, CV_8UC3));
    annotation.draw(tracker, frame);
    return matView(frame).clone();
}

TEST(AnnotationTest, DrawsBoxPredictionAndTrailWhileThereIsATrack) {
    const cv::Vec3b black, blue(255, 64, 0), green(0, 220, 0), grey(128, 128, 128), red(0, 0, 255), yellow(0, 220, 255);
    cv::Mat circle(SIZE, CV_8UC3, WALL);
    cv::circle(circle, {250, 110}, 35, SKIN, cv::FILLED);
    Tracked hand(0);
    Annotation annotation;
    const auto cornerOf = [&] { return cv::Rect(hand.tracker.motion().box()).tl(); };
    cv::Mat drawn;
    for (int i = 0; i < 45; ++i) {
        hand.see(handScene(i));
        drawn = drawnBy(annotation, hand.tracker);
    }
    EXPECT_EQ(drawn.at<cv::Vec3b>(110, 72 + 4 * 15), yellow) << "30 frames of trail";
    EXPECT_EQ(drawn.at<cv::Vec3b>(110, 72 + 4 * 14), black) << "and no more";
    EXPECT_EQ(drawn.at<cv::Vec3b>(cornerOf()), blue);
    EXPECT_EQ(drawn.at<cv::Vec3b>(cv::Point(hand.tracker.predictedCentre())), red);
    hand.see(circle);
    drawn = drawnBy(annotation, hand.tracker);
    cv::inRange(drawn(cv::Rect(220, 80, 60, 60)), green, green, drawn);
    EXPECT_GT(cv::countNonZero(drawn), 100) << "the outline, inside of the box";
    hand.seeWall(1);
    EXPECT_EQ(drawnBy(annotation, hand.tracker).at<cv::Vec3b>(cornerOf()), grey) << "out of sight";
    hand.seeWall(60);
    EXPECT_EQ(cv::countNonZero(drawnBy(annotation, hand.tracker).reshape(1)), 0) << "no track";
    hand.see(scene({240, 20, 60, 40}, SKIN));
    drawn = drawnBy(annotation, hand.tracker);
    EXPECT_EQ(cv::countNonZero(drawn(cv::Rect(0, 70, 320, 170)).reshape(1)), 0) << "nothing of the last track's trail";
}

TEST(AnnotationTest, TheLegendIsSpreadOverItsWidth) {
    const cv::Mat legend = Annotation::legend(1296).reshape(1);
    EXPECT_GT(cv::countNonZero(legend.colRange(3 * 600, 3 * 800)), 100) << "the last of five texts";
}

TEST(MosaicTest, SmallFramesKeepTheirSizeAndHaveACaption) {
    Mosaic mosaic;
    mosaic.add(imageOf(cv::Mat::zeros(50, 100, CV_8UC3)), "caption");
    const auto composed = mosaic.compose();
    EXPECT_EQ(composed.width(), 4 * 104) << "with a border of 2";
    const int coloured = cv::countNonZero(matView(composed)(cv::Rect(2, 30, 100, 20)).clone().reshape(1));
    EXPECT_GT(coloured, 50);
    EXPECT_EQ(cv::countNonZero(matView(composed).reshape(1)), coloured) << "borders and other cells are black";
}

TEST(MosaicTest, SpreadsSixteenFramesEvenly) {
    Mosaic mosaic;
    for (int i = 0; i < 400; ++i)
        mosaic.add(imageOf(cv::Mat(SIZE * 2, CV_8UC3, cv::Scalar::all(i / 2))), "");
    const auto composed = mosaic.compose();
    for (int cell = 0; cell < 16; ++cell) {
        const cv::Vec3b pixel = matView(composed).at<cv::Vec3b>(244 * (cell / 4) + 122, 324 * (cell % 4) + 162);
        ASSERT_NEAR(pixel[0], cell * 199 / 15, 6) << "cell " << cell;
    }
}

TEST(ResultsTest, KeepsADirectoryMadeMeanwhileUnderAResultsName) {
    const TemporaryDirectory here;
    Results results("out", {"table"});
    std::filesystem::create_directory("out/table");
    EXPECT_THROW(results.publish(), std::runtime_error);
    EXPECT_TRUE(std::filesystem::exists("out/table"));
}

}  // namespace
}  // namespace skin_tracker
