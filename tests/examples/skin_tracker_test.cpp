#include "support/Program.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <opencv2/videoio.hpp>

#include <cmath>
#include <map>
#include <sstream>
#include <sys/stat.h>

namespace {

constexpr int FRAMES = 60, HIDDEN_FROM = 30, HIDDEN_TO = 38;

cv::Point2d placeIn(int frame) {
    return {160 + 90 * std::sin(0.06 * frame), 120 + 50 * std::sin(0.11 * frame)};
}

/// A skin-coloured ellipse in motion over clutter, with noise, hidden for a while.
cv::Mat frameOf(int number) {
    cv::Mat frame(240, 320, CV_8UC3, cv::Scalar(170, 175, 180));
    cv::rectangle(frame, cv::Rect(20, 20, 60, 90), cv::Scalar(200, 80, 60), cv::FILLED);
    cv::circle(frame, {30, 200}, 3, cv::Scalar(110, 143, 201), cv::FILLED);
    cv::ellipse(frame, cv::Point(placeIn(number)), {34, 22}, 0, 0, 360, cv::Scalar(110, 143, 201), cv::FILLED);
    if (number >= HIDDEN_FROM && number < HIDDEN_TO)
        cv::circle(frame, placeIn(number), 50, cv::Scalar(150, 150, 90), cv::FILLED);
    cv::Mat noise(frame.size(), CV_16SC3);
    cv::randn(noise, 0, 4);
    cv::add(frame, noise, frame, cv::noArray(), CV_8UC3);
    return frame;
}

ProgramRun track(const std::string& arguments) {
    return ProgramRun::of("env -u DISPLAY '" SKIN_TRACKER "' " + arguments);
}

/// The columns of track.csv by their names; empty fields are NaN.
std::map<std::string, std::vector<double>> columnsOf(const std::string& path) {
    std::istringstream lines(contentOf(path));
    std::map<std::string, std::vector<double>> columns;
    std::string names;
    std::getline(lines, names);
    for (std::string line, name, field; std::getline(lines, line);)
        for (std::istringstream heads(names), fields(line); std::getline(heads, name, ',');)
            columns[name].push_back(std::getline(fields, field, ',') && !field.empty() ? std::stod(field) : NAN);
    return columns;
}

void writeFrames(int count) {
    cv::theRNG().state = 1;
    std::filesystem::create_directory("frames");
    for (int i = 0; i < count; ++i)
        cv::imwrite(cv::format("frames/%03d.png", i), frameOf(i));
}

class SkinTrackerTest : public testing::Test {
protected:
    const TemporaryDirectory directory;
};

TEST_F(SkinTrackerTest, FollowsAKnownMotionThroughAnOcclusion) {
    writeFrames(FRAMES);
    const ProgramRun run = track("-input frames -output out -video");
    ASSERT_EQ(run.status, 0) << run.errors;
    auto columns = columnsOf("out/track.csv");
    ASSERT_EQ(columns["found"].size(), static_cast<std::size_t>(FRAMES));
    const auto placeAt = [&](std::size_t i) { return cv::Point2d(columns["x"][i], columns["y"][i]); };
    for (std::size_t i = 0; i < FRAMES; ++i) {
        const bool visible = i < HIDDEN_FROM || i >= HIDDEN_TO;
        EXPECT_EQ(columns["found"][i], visible ? 1 : 0) << "frame " << i;
        EXPECT_LT(cv::norm(placeAt(i) - placeIn(static_cast<int>(i))), visible ? 6.0 : 30.0) << "frame " << i;
    }
    const cv::Point2d velocity(columns["vx"][HIDDEN_FROM - 1], columns["vy"][HIDDEN_FROM - 1]);
    EXPECT_LT(cv::norm(velocity - (placeIn(HIDDEN_FROM) - placeIn(HIDDEN_FROM - 2)) * 12.5), 30.0);
    const cv::Mat mosaic = cv::imread("out/mosaic.png");
    EXPECT_EQ(mosaic.size(), cv::Size(4 * 320, 4 * 240 + 24)) << "with a legend";
    for (const cv::Scalar& colour :
         {cv::Scalar(255, 64, 0), {0, 220, 0}, {0, 0, 255}, {0, 220, 255}, {128, 128, 128}}) {
        cv::Mat drawn;
        cv::inRange(mosaic.rowRange(0, 4 * 240), colour, colour, drawn);
        EXPECT_GT(cv::countNonZero(drawn), 20) << "box, outline, prediction, trail, box out of sight: " << colour;
    }
    EXPECT_EQ(cv::VideoCapture("out/track.avi").get(cv::CAP_PROP_FRAME_COUNT), FRAMES);
    EXPECT_EQ(entriesOf("out"), 4) << "nothing else is left";
}

TEST_F(SkinTrackerTest, WaitsForAHandAndUsesEveryNthFrame) {
    writeFrames(12);
    TemporaryDirectory::write("frames/notes.txt", "no frame");
    cv::imwrite("frames/000.png", cv::Mat(240, 320, CV_8UC3, cv::Scalar(170, 175, 180)));
    ASSERT_EQ(track("-input frames -output out -step 5 -frames 2").status, 0);
    auto columns = columnsOf("out/track.csv");
    EXPECT_EQ(columns["frame"], (std::vector<double>{0, 5}));
    EXPECT_EQ(columns["time"], (std::vector<double>{0, 0.2}));
    EXPECT_EQ(columns["found"], (std::vector<double>{0, 1}));
    EXPECT_TRUE(std::isnan(columns["x"][0]));
}

TEST_F(SkinTrackerTest, WrongInputGivesOneLineAndWritesNothing) {
    writeFrames(2);
    for (const char* name : {"empty", "looped", "taken/mosaic.png"})
        std::filesystem::create_directories(name);
    for (const char* name : {"text.mp4", "file", "taken/track.csv"})
        TemporaryDirectory::write(name, "neither image nor video");
    std::filesystem::create_symlink("loop.png", "looped/loop.png");
    mkfifo("pipe", 0600);
    const std::string tracker = "skin_tracker: ";
    const std::pair<std::string, std::string> cases[] = {
        {"-input nowhere.mp4",
         "Searching for data dir...\nData directory not found!\n" + tracker + "there is no nowhere.mp4\n"},
        {"-input ''", tracker + "-input takes the name of a video or a directory\n"},
        {"-camera 77", tracker + "there is no camera 77\n"},
        {"-input empty", tracker + "there are no images in the directory empty\n"},
        {"-input pipe", tracker + "pipe is neither a directory nor a regular file\n"},
        {"-input text.mp4", tracker + "cannot decode the video text.mp4\n"},
        {"-input looped", "Exception Msg: loop.png filesystem error: status: Too many levels of symbolic links [" +
                              directory.path() + "/looped/loop.png]\n"},
        {"-input frames -output file", tracker + "cannot create the output directory file\n"},
        {"-input frames -output no/where", tracker + "cannot create the output directory no/where\n"},
        {"-input frames -output frames", tracker + "the output directory is the input\n"},
        {"-input frames -output taken", tracker + "taken/mosaic.png is a directory\n"},
        {"-input frames -show", tracker + "-show needs a display\n"},
        {"-input frames -outputt x", tracker + "unknown option -outputt, see -help\n"},
        {"-a -input frames -b", tracker + "unknown options -a -b, see -help\n"},
        {"-input frames -frames 2x", tracker + "-frames takes a whole number from 0 up, not \"2x\"\n"},
        {"-input frames -order 1", tracker + "-order takes a whole number from 2 to 4, not \"1\"\n"}};
    for (const auto& [arguments, errors] : cases) {
        const ProgramRun run = track("-video -output out " + arguments);
        EXPECT_EQ(run.status, 1) << arguments;
        EXPECT_EQ(run.errors, errors);
        EXPECT_FALSE(std::filesystem::exists("out")) << arguments;
    }
    EXPECT_EQ(contentOf("taken/track.csv"), "neither image nor video");
    EXPECT_EQ(entriesOf("taken"), 2) << "no part is left";
}

TEST_F(SkinTrackerTest, PublishesWhatThisRunMadeAndTellsWhatHappened) {
    writeFrames(3);
    cv::imwrite("frames/002.png", cv::Mat(10, 20, CV_8UC3, cv::Scalar::all(0)));
    TemporaryDirectory::write("frames/001.png", "no image");
    TemporaryDirectory::write("kept", "text");
    std::filesystem::create_directory("out");
    std::filesystem::create_symlink("../kept", "out/track.csv");
    TemporaryDirectory::write("out/track.avi", "of an earlier run");
    const ProgramRun run = track("-input frames -output out");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.output, testing::MatchesRegex("1 frames; hand found in 1; [0-9]+ frames a second\n"
                                                  "out/track.csv\nout/mosaic.png\nout/track.png\n"));
    EXPECT_EQ(
        run.errors,
        "ERROR: Could not load image: frames/001.png\nskin_tracker: passed over frames/002.png, which is "
        "20x10 pixels, the frames before it 320x240\nskin_tracker: the directory says 3 frames, 1 could be decoded\n");
    EXPECT_EQ(contentOf("kept"), "text") << "a link is replaced, not followed";
    EXPECT_FALSE(std::filesystem::exists("out/track.avi"));
}

TEST_F(SkinTrackerTest, ShowsFramesInAWindowAndABarOnATerminal) {
    if (ProgramRun::of("script -qec true typescript").status != 0)
        GTEST_SKIP() << "there are no terminals";
    writeFrames(60);
    const ProgramRun run =
        ProgramRun::of("export ASAN_OPTIONS=detect_leaks=0; '" XVFB_RUN "' -a script -qec \"'" SKIN_TRACKER
                       "' -input frames -output out -show\" typescript");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(contentOf("typescript"), testing::ContainsRegex("\\[=+ *\\] +[0-9]+ %, [0-9]+ frames a second, "));
}

TEST_F(SkinTrackerTest, ASignalEndsItInOrder) {
    writeFrames(20);
    const ProgramRun run =
        ProgramRun::of("('" SKIN_TRACKER
                       "' -input frames -output out -video & "
                       "while kill -0 $! && ! ls out/.skin*/track.avi; do sleep 0.01; done; kill -INT $!; wait $!)");
    EXPECT_TRUE(run.status == 130 || run.status == 0) << run.errors;  // it may have been faster
    EXPECT_EQ(entriesOf("out"), 4);
}

}  // namespace
