#include "support/Files.h"
#include "support/Output.h"

#include <opencv2/imgcodecs.hpp>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/video/FrameSource.h>
#include <tarvos/video/VideoFile.h>

#include <cmath>
#include <stdexcept>
#include <sys/stat.h>

using namespace tarvos::video;
using tarvos::core::cvdata::Image;
using tarvos::core::cvdata::imageOf;

namespace {

/// A frame whose blue says its number; it has half as much green, and no red.
cv::Mat frame(int number, cv::Size size = {64, 48}) {
    return {size, CV_8UC3, cv::Scalar(20 * number, 10 * number, 0)};
}

struct VideoTest : testing::Test {
    const TemporaryDirectory directory;

    /// Reads everything: the numbers of the frames by their colour, their numbers and times by the source.
    struct Track {
        std::vector<int> seen, numbers;
        std::vector<double> times;
    };
    static Track readAll(FrameSource& source) {
        Track track;
        Image read(64, 48, Image::CHANNELS_RGB, Image::BITS_8U);
        read.setTimeStamp(7);
        const auto blue = [&] { return cvRound(cv::mean(matView(read))[0] / 20); };
        EXPECT_EQ(source.time(), 0.0) << "before the first frame";
        while (source.read(read)) {
            track.seen.push_back(blue());
            track.numbers.push_back(source.number());
            track.times.push_back(source.time());
        }
        EXPECT_EQ(read.channels(), Image::CHANNELS_BGR);
        EXPECT_EQ(read.getTimeStamp(), 7) << "the source sets it";
        EXPECT_EQ(blue(), track.seen.back()) << "the frame is changed at the end";
        return track;
    }
    /// A video of frames from @p first on to before @p end.
    static void write(const char* path, double rate, int first, int end) {
        VideoFile video(path, rate);
        for (int number = first; number < end; ++number)
            video.add(imageOf(frame(number)));
        video.finish();
    }
    static void expectEvenTimes(const std::vector<double>& times, std::size_t count, double rate) {
        ASSERT_EQ(times.size(), count);
        for (std::size_t i = 0; i < count; ++i)
            EXPECT_NEAR(times[i], static_cast<double>(i) / rate, 1e-6) << "frame " << i;
    }
    /// The reason that @p path cannot be opened for.
    static std::string refusal(const std::string& path) {
        try {
            FrameSource::open(path);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "it was opened";
    }
};

TEST_F(VideoTest, ADirectoryIsReadInNaturalOrder) {
    int number = 0;
    for (const char* name : {"a2.png", "a010.TIF", "b1-2.tiff", "b1-10.jpg", "b02-1.jpeg", "b18446744073709551616.pgm",
                             "b18446744073709551617.webp", "line\nbreak.bmp"}) {
        std::vector<unsigned char> bytes;
        cv::imencode(".png", frame(++number), bytes);
        writeFile(name, {bytes.begin(), bytes.end()});
    }
    writeFile("notes.txt");
    std::filesystem::create_directory("folder.png");
    const auto source = FrameSource::open(".", 10.0);
    EXPECT_EQ(source->frameCount(), 8);
    EXPECT_EQ(source->frameRate(), 10.0);
    EXPECT_EQ(source->number(), -1);
    const Track track = readAll(*source);
    EXPECT_THAT(track.seen, testing::ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
    expectEvenTimes(track.times, 8, 10.0);
}

TEST_F(VideoTest, WhatCannotBeUsedIsNamedAndLeavesAGap) {
    for (const int number : {0, 1, 3, 5})
        cv::imwrite(std::to_string(number) + ".png", frame(number));
    writeFile("2.png", "no image");
    writeFile("2\nforged.png", "no image");
    writeFile("6.png", "no image");
    cv::imwrite("4.png", frame(4, {32, 16}));
    const auto source = FrameSource::open(".");
    Track track;
    const std::string reported = captureStderr([&] { track = readAll(*source); });
    EXPECT_THAT(track.seen, testing::ElementsAre(0, 1, 3, 5));
    EXPECT_THAT(track.numbers, testing::ElementsAre(0, 1, 4, 6));
    EXPECT_DOUBLE_EQ(track.times[2], 4 / 25.0);
    EXPECT_THAT(reported, testing::MatchesRegex("(ERROR: Could not load image: [^\n]*\n|Skipped ./2.forged.png\n)+"
                                                "Skipped ./4.png: it has 32x16 pixels, the frames before it 64x48\n"
                                                "ERROR: Could not load image: ./6.png\n"));
}

TEST_F(VideoTest, AVideoIsReadAsItWasWritten) {
    write("12:30.avi", 12.5, 1, 9);  // a protocol for FFmpeg
    const auto source = FrameSource::open("12:30.avi");
    EXPECT_EQ(source->frameCount(), 8);
    EXPECT_EQ(source->frameRate(), 12.5);
    const Track track = readAll(*source);
    EXPECT_THAT(track.seen, testing::ElementsAre(1, 2, 3, 4, 5, 6, 7, 8));
    EXPECT_THAT(track.numbers, testing::ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
    expectEvenTimes(track.times, 8, 12.5);
}

TEST_F(VideoTest, AVideosTimesAreThoseOfItsStamps) {
    write("even.avi", 10.0, 1, 6);
    std::string bytes = contentOf("even.avi");
    bytes.replace(bytes.rfind("idx1"), 4, "JUNK");  // by which the frames would be found
    const std::string chunk("00dc");
    const std::size_t second = bytes.find(chunk, bytes.find(chunk, bytes.find("movi")) + 4);
    writeFile("gap.avi", bytes.insert(second, chunk + std::string(4, '\0')));  // a frame that was dropped
    EXPECT_THAT(readAll(*FrameSource::open("gap.avi")).times,
                testing::Pointwise(testing::DoubleNear(1e-6), {0.0, 0.2, 0.3, 0.4, 0.5}));
}

TEST_F(VideoTest, WithoutSensibleStampsTheTimeIsByTheFrameRate) {
    std::string stream;  // raw JPEG files
    for (int number = 0; number < 6; ++number) {
        std::vector<unsigned char> bytes;
        cv::imencode(".jpg", frame(number), bytes);
        stream.append(bytes.begin(), bytes.end());
    }
    writeFile("raw.mjpeg", stream);
    const auto raw = FrameSource::open("raw.mjpeg");
    EXPECT_EQ(raw->frameCount(), 0) << "the stream does not know";
    expectEvenTimes(readAll(*raw).times, 6, 25.0);

    std::string absurd = "YUV4MPEG2 W64 H48 F1200000:1 Ip A1:1 C420jpeg\n";
    for (int number = 0; number < 6; ++number)
        absurd += "FRAME\n" + std::string(64 * 48 * 3 / 2, static_cast<char>(100 + number));
    writeFile("absurd.y4m", absurd);
    const auto source = FrameSource::open("absurd.y4m");
    EXPECT_EQ(source->frameRate(), 25.0);
    expectEvenTimes(readAll(*source).times, 6, 25.0);
}

TEST_F(VideoTest, AnInputThatCannotBeUsedIsRefusedWithTheReason) {
    std::filesystem::create_directory("empty");
    writeFile("text.mp4", "no video");
    writeFile("text.txt", std::string(2000, 'x'));
    mkfifo("pipe", 0600);
    EXPECT_EQ(refusal("missing"), "missing: No such file or directory");
    EXPECT_EQ(refusal("empty"), "there are no images in the directory empty");
    EXPECT_EQ(refusal("pipe"), "pipe is neither a directory nor a regular file");
    for (const std::string text : {"text.mp4", "text.txt"})
        captureStderr([&] { EXPECT_EQ(refusal(text), "cannot decode the video " + text); });
    captureStderr([] { EXPECT_THROW(FrameSource::openCamera(77), std::runtime_error); });
    for (const double rate : {0.0, -1.0, std::nan(""), HUGE_VAL})
        ASSERT_DEATH(FrameSource::open(".", rate), "the rate is not above 0 and finite");
}

TEST_F(VideoTest, AVideoThatIsNotWholeIsAnError) {
    for (int i = 0; i < 2; ++i)  // the second replaces the first
        EXPECT_NO_THROW(write("whole.avi", 25.0, 0, 8));
    expectFailureOnAFullDisk("a video", [&]() -> bool {
        try {
            write("cut.avi", 25.0, 0, 8);
            return true;
        } catch (const std::runtime_error&) {
            return false;
        }
    });
    EXPECT_THROW(VideoFile("no/where.avi", 25.0).add(imageOf(frame(1))), std::runtime_error);
}

TEST_F(VideoTest, SmallFramesAreWrittenAndOthersStop) {
    VideoFile video("small.avi", 25.0);
    video.add(imageOf(cv::Mat(2, 3, CV_8UC3, cv::Scalar::all(100))));
    video.finish();
    Image read;
    ASSERT_TRUE(FrameSource::open("small.avi")->read(read));
    EXPECT_NEAR(matView(read).at<cv::Vec3b>(1, 2)[0], 100, 12);
    EXPECT_NEAR(matView(read).at<cv::Vec3b>(15, 15)[0], 0, 12) << "the padding is black";
    EXPECT_DEATH(video.add(imageOf(frame(5, {3, 2}))), "the video is finished");
    EXPECT_THROW(VideoFile("none.avi", 25.0).finish(), std::runtime_error);
    EXPECT_THROW(VideoFile("video.mp4", 25.0), std::runtime_error);
    Image rgb(20, 20, Image::CHANNELS_RGB, Image::BITS_8U);
    EXPECT_DEATH(VideoFile("x.avi", 25.0).add(rgb), "not 8-bit BGR");
    VideoFile sized("x.avi", 25.0);
    sized.add(imageOf(frame(5)));
    EXPECT_DEATH(sized.add(imageOf(frame(5, {64, 32}))), "as large as the first");
    EXPECT_DEATH(VideoFile("x.avi", HUGE_VAL), "the frame rate is not above 0 and finite");
}

}  // namespace
