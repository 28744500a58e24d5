#include "MotionFilter.h"
#include "Regions.h"
#include "support/Program.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <opencv2/videoio.hpp>

#include <cmath>
#include <cstdio>
#include <map>
#include <numeric>
#include <sstream>

namespace {

constexpr int FRAMES = 60;
constexpr int HIDDEN_FROM = 30;
constexpr int HIDDEN_TO = 38;

cv::Point2d placeIn(int frame) {
    return {160 + 90 * std::sin(0.06 * frame), 120 + 50 * std::sin(0.11 * frame)};
}

/// A skin-coloured ellipse in motion over clutter, with noise, hidden by a panel for a while.
cv::Mat frameOf(int number) {
    cv::Mat frame(240, 320, CV_8UC3, cv::Scalar(170, 175, 180));
    cv::rectangle(frame, cv::Rect(20, 20, 60, 90), cv::Scalar(200, 80, 60), cv::FILLED);
    cv::rectangle(frame, cv::Rect(230, 150, 70, 60), cv::Scalar(60, 160, 70), cv::FILLED);
    cv::circle(frame, {270, 40}, 25, cv::Scalar(30, 30, 30), cv::FILLED);
    cv::circle(frame, {30, 200}, 3, cv::Scalar(110, 143, 201), cv::FILLED);
    cv::ellipse(frame, cv::Point(placeIn(number)), {34, 22}, 0, 0, 360, cv::Scalar(110, 143, 201),
                cv::FILLED);
    if (number >= HIDDEN_FROM && number < HIDDEN_TO)
        cv::rectangle(frame, cv::Rect(cv::Point(placeIn(number)) - cv::Point(50, 40), cv::Size(100, 80)),
                      cv::Scalar(150, 150, 90), cv::FILLED);
    cv::Mat noise(frame.size(), CV_16SC3);
    cv::RNG random(static_cast<std::uint64_t>(number) + 1);
    random.fill(noise, cv::RNG::NORMAL, 0, 4);
    cv::add(frame, noise, frame, cv::noArray(), CV_8UC3);
    return frame;
}

ProgramRun track(const std::string& arguments) {
    return ProgramRun::of("'" SKIN_TRACKER "' " + arguments);
}

/// The rows of track.csv as numbers by the names of the columns.
std::vector<std::map<std::string, double>> rowsOf(const std::string& path) {
    std::istringstream lines(contentOf(path));
    std::vector<std::map<std::string, double>> rows;
    std::vector<std::string> names;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream fields(line);
        std::size_t column = 0;
        if (!names.empty())
            rows.emplace_back();
        for (std::string field; std::getline(fields, field, ','); ++column) {
            if (rows.empty())
                names.push_back(field);
            else
                rows.back()[names.at(column)] = field.empty() ? NAN : std::stod(field);
        }
    }
    return rows;
}

class SkinTrackerTest : public testing::Test {
protected:
    static void writeFrames(int count) {
        std::filesystem::create_directory("frames");
        for (int i = 0; i < count; ++i) {
            char name[32];
            std::snprintf(name, sizeof name, "frames/%03d.png", i);
            cv::imwrite(name, frameOf(i));
        }
    }

    const TemporaryDirectory directory;
};

TEST_F(SkinTrackerTest, FollowsAKnownMotionThroughAnOcclusion) {
    writeFrames(FRAMES);
    for (const char* order : {"2", "3"}) {
        const ProgramRun run = track("-input frames -output out -video -order " + std::string(order));
        ASSERT_EQ(run.status, 0) << run.errors;
        const auto rows = rowsOf("out/track.csv");
        ASSERT_EQ(rows.size(), static_cast<std::size_t>(FRAMES));
        double error = 0.0;
        for (int i = 0; i < FRAMES; ++i) {
            const auto& row = rows[static_cast<std::size_t>(i)];
            const bool visible = i < HIDDEN_FROM || i >= HIDDEN_TO;
            EXPECT_EQ(row.at("frame"), i);
            EXPECT_NEAR(row.at("time"), i / 25.0, 1e-4);
            EXPECT_EQ(row.at("found"), visible ? 1 : 0) << "frame " << i;
            EXPECT_EQ(row.at("area") > 0, visible);
            if (visible)
                error += cv::norm(cv::Point2d(row.at("x"), row.at("y")) - placeIn(i));
        }
        EXPECT_LT(error / (FRAMES - HIDDEN_TO + HIDDEN_FROM), 3.0);
        const auto& settled = rows[static_cast<std::size_t>(HIDDEN_FROM) - 1];
        const cv::Point2d motion = (placeIn(HIDDEN_FROM) - placeIn(HIDDEN_FROM - 2)) * 12.5;
        EXPECT_LT(cv::norm(cv::Point2d(settled.at("vx"), settled.at("vy")) - motion), 30.0)
            << "pixels a second";
        EXPECT_GT(cv::norm(cv::Point2d(rows[HIDDEN_TO - 1].at("x"), rows[HIDDEN_TO - 1].at("y")) -
                           cv::Point2d(settled.at("x"), settled.at("y"))),
                  10.0)
            << "the prediction coasts";
    }
    EXPECT_EQ(cv::imread("out/mosaic.png").size(), cv::Size(4 * 320, 4 * 240));
    cv::VideoCapture video("out/track.avi");
    EXPECT_EQ(video.get(cv::CAP_PROP_FRAME_COUNT), FRAMES);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator("out"), {}), 3) << "nothing else is left";
}

TEST_F(SkinTrackerTest, UsesEveryNthFrame) {
    writeFrames(12);
    TemporaryDirectory::write("frames/notes.txt", "no frame");
    ASSERT_EQ(track("-input frames -output out -step 5 -frames 2").status, 0);
    const auto rows = rowsOf("out/track.csv");
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[1].at("frame"), 5);
    EXPECT_NEAR(rows[1].at("time"), 0.2, 1e-9);
}

TEST_F(SkinTrackerTest, WaitsForAHand) {
    std::filesystem::create_directory("frames");
    cv::imwrite("frames/0.png", cv::Mat(240, 320, CV_8UC3, cv::Scalar(170, 175, 180)));
    cv::imwrite("frames/1.png", frameOf(1));
    ASSERT_EQ(track("-input frames -output out").status, 0);
    const auto rows = rowsOf("out/track.csv");
    EXPECT_TRUE(std::isnan(rows.at(0).at("x")));
    EXPECT_EQ(rows.at(0).at("found"), 0);
    EXPECT_EQ(rows.at(1).at("found"), 1);
}

TEST_F(SkinTrackerTest, WrongInputGivesOneLineAndWritesNothing) {
    writeFrames(2);
    std::filesystem::create_directory("empty");
    std::filesystem::create_directory("broken");
    std::filesystem::copy("frames/000.png", "broken/0.png");
    TemporaryDirectory::write("broken/1.png", "no image");
    std::filesystem::create_directory("mixed");
    std::filesystem::copy("frames/000.png", "mixed/0.png");
    cv::imwrite("mixed/1.png", cv::Mat(10, 20, CV_8UC3, cv::Scalar::all(0)));
    TemporaryDirectory::write("text.mp4", "no video");
    TemporaryDirectory::write("file");
    const std::string found = "Searching for data dir...\nData directory not found!\n";
    const std::string tracker = "skin_tracker: ";
    const struct {
        std::string arguments, errors;
    } cases[] = {
        {"-input nowhere.mp4 -output out", found + tracker + "there is no nowhere.mp4\n"},
        {"-input empty -output out", found + tracker + "there are no images in the directory empty\n"},
        {"-input text.mp4 -output out", found + tracker + "cannot decode the video text.mp4\n"},
        {"-input broken -output out", found + "ERROR: Could not load image: broken/1.png\n"},
        {"-input mixed -output out",
         found + tracker + "frame mixed/1.png is 20x10 pixels, the frames before it 320x240\n"},
        {"-input frames -output file", found + tracker + "cannot create the output directory file\n"},
        {"-input frames -output no/where", found + tracker + "cannot create the output directory no/where\n"},
        {"-input frames -output out -step 0", tracker + "-step takes a whole number from 1 up, not \"0\"\n"},
        {"-input frames -output out -step 2x",
         tracker + "-step takes a whole number from 1 up, not \"2x\"\n"},
        {"-input frames -output out -frames -1",
         tracker + "-frames takes a whole number from 0 up, not \"-1\"\n"},
        {"-input frames -output out -order 1",
         tracker + "-order takes a whole number from 2 to 4, not \"1\"\n"},
    };
    for (const auto& c : cases) {
        const ProgramRun run = track("-video " + c.arguments);
        EXPECT_EQ(run.status, 1) << c.arguments;
        EXPECT_EQ(run.errors, c.errors);
        EXPECT_FALSE(std::filesystem::exists("out")) << c.arguments;
    }
}

TEST(RegionsTest, DescribesBlobsAndTheirOutline) {
    cv::Mat mask(60, 80, CV_8UC1, cv::Scalar(0));
    cv::rectangle(mask, cv::Rect(10, 20, 40, 16), cv::Scalar(255), cv::FILLED);
    cv::rectangle(mask, cv::Rect(60, 5, 3, 3), cv::Scalar(255), cv::FILLED);
    const skin_tracker::Regions regions(mask, 50);
    ASSERT_EQ(regions.blobs().dimension(), 1U);
    const auto& blob = regions.blobs().mBlobs.front();
    EXPECT_EQ(skin_tracker::boxOf(blob), cv::Rect(10, 20, 40, 16));
    EXPECT_EQ(blob.mField2, 640);
    EXPECT_NEAR(blob.mVector[0], 29.5, 1e-9);
    EXPECT_NEAR(blob.mMatrix1(0, 0), 40.0 * 40.0 / 12.0, 1e-9);
    EXPECT_NEAR(blob.mMatrix2(1, 1), 12.0 / (16.0 * 16.0), 1e-9);

    tarvos::core::cvdata::VisContourSamplePts outline;
    skin_tracker::traceOutline(regions.maskOf(blob), outline);
    ASSERT_GT(outline.mPoints.size(), 8U);
    EXPECT_EQ(outline.mEdges.size(), outline.mPoints.size());
    const cv::Point2d centre(29.5, 27.5);
    for (const auto& edge : outline.mEdges) {
        const auto& sample = edge.mPointRefs.front()->mVec4;
        EXPECT_GT((cv::Point2d(sample[0], sample[1]) - centre).dot(cv::Point2d(sample[2], sample[3])), 0.0)
            << "outward";
        EXPECT_NEAR(std::hypot(sample[2], sample[3]), 1.0, 1e-9);
    }
}

TEST(MotionFilterTest, StateIsTheFiltersState) {
    skin_tracker::MotionFilter filter(3, 640);
    filter.start({100, 100, 40, 20}, 2.0);
    for (int i = 1; i <= 60; ++i) {
        const double t = i / 30.0;
        filter.predict(2.0 + t);
        filter.correct({100 + 50 * t + 15 * t * t, 100, 40, 20});
    }
    EXPECT_NEAR(filter.centre().x, 120 + 100 + 60, 1.0);
    EXPECT_NEAR(filter.velocity().x, 50 + 60, 6.0);
    EXPECT_EQ(filter.state().getMaxOrder(), 3);
    EXPECT_NEAR(filter.state().getTimeStamp(), 4.0, 1e-9);
    tarvos::math::Vector acceleration(4);
    filter.state().getStateIncData(acceleration, 2);
    EXPECT_NEAR(acceleration[0], 30.0, 30.0);
}

}  // namespace
