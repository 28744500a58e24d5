#include "core/cvdata/MatView.h"
#include "support/Files.h"
#include "support/Output.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace tarvos::core::cvdata;
namespace fs = std::filesystem;

namespace {

cv::Mat noise(int type) {
    cv::Mat pixels(23, 37, type);
    cv::randu(pixels, 0, CV_MAT_DEPTH(type) == CV_32F ? 1 : 256);
    return pixels;
}

/// With files of all kinds at hand.
struct ImageFileTest : testing::TestWithParam<std::string> {
    const TemporaryDirectory directory;
    const cv::Mat pixels = noise(CV_8UC3);

    ImageFileTest() {
        cv::imwrite("colour.png", pixels);
        cv::imwrite("float.hdr", noise(CV_32FC3));
        fs::copy_file("colour.png", "damaged");
        fs::resize_file("damaged", 500);
        fs::copy_file("float.hdr", "cut");
        fs::resize_file("cut", 1200);
        writeFile("sizeless", "#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 0 +X 9\n");
        writeFile("formatless", "#?RADIANCE\n\n-Y 1 +X 1\nabcd");
        writeFile("text", "No image.");
        writeFile("dicom", std::string(128, '\0') + "DICM");
        writeFile("empty");
        fs::create_directory("directory.png");
        fs::create_symlink("/dev/zero", "device.png");
        mkfifo("pipe", 0600);
    }

    /// Loads the file @p name, which is to make itself heard by @p errors.
    static Image load(const std::string& name, const testing::Matcher<const std::string&>& errors) {
        Image image;
        EXPECT_THAT(errorsOf([&] { image = Image(name); }), errors);
        return image;
    }
    static std::string complaint(const std::string& name) { return "ERROR: Could not load image: " + name + "\n"; }

    Image image = imageOf(pixels);
};

const auto NAME = [](const testing::TestParamInfo<std::string>& test) { return fs::path(test.param).stem().string(); };

TEST_F(ImageFileTest, AGoodFileIsLoadedSilentlyIntoRowsByTheRule) {
    image = load("colour.png", "");
    const unsigned char* buffer = image.imageBuffer();
    image = Image(37, 23, Image::CHANNELS_BGR, Image::BITS_8U);
    EXPECT_EQ(image.imageBuffer(), buffer);
}

struct NoImageFileTest : ImageFileTest {};

TEST_P(NoImageFileTest, IsReportedInOneLineAtOnce) {
    EXPECT_TRUE(load(GetParam(), complaint(GetParam())).empty());
    const std::ptrdiff_t descriptors = entriesOf("/proc/self/fd");
    EXPECT_TRUE(load(GetParam(), complaint(GetParam())).empty());
    EXPECT_EQ(entriesOf("/proc/self/fd"), descriptors);
}

INSTANTIATE_TEST_SUITE_P(, NoImageFileTest,
                         testing::Values("missing.png", "empty", "text", "directory.png", "pipe", "device.png", "cut",
                                         "sizeless", "formatless", "dicom"),
                         NAME);

TEST_F(ImageFileTest, AnEmptyPathAndANulByteNameNothingAndOfADamagedImageTheLineIsTheLast) {
    for (const std::string& name : {std::string(), std::string("colour.png\0x", 12)})
        EXPECT_TRUE(load(name, complaint(name)).empty());
    EXPECT_TRUE(load("damaged", testing::EndsWith(complaint("damaged"))).empty());
}

TEST_F(ImageFileTest, GoodFilesLoadWhereLittleIsLeft) {
#ifndef __SANITIZE_ADDRESS__  // the sanitizer wants descriptors, too
    const int lowest = open("/dev/null", O_RDONLY);
    close(lowest);
    expectInLimits(RLIMIT_NOFILE, static_cast<rlim_t>(lowest) + 1, [] { EXPECT_FALSE(Image("colour.png").empty()); });
#endif
    for (const char* name : {"colour.png", "float.hdr"})
        expectInLimits(RLIMIT_FSIZE, 0, [&] { EXPECT_FALSE(Image(name).empty()) << name; });
}

struct SavedImageTest : ImageFileTest {};

TEST_P(SavedImageTest, IsLoadedAgainWhateverItsLayoutAndRegionOfInterest) {
    const std::ptrdiff_t entries = entriesOf(".");
    for (const auto layout : {Image::CHANNELS_BGR, Image::CHANNELS_RGB}) {
        image.setChannels(layout);
        EXPECT_EQ(errorsOf([&] { EXPECT_TRUE(image.save(GetParam())); }), "");
        const Image loaded(GetParam());
        EXPECT_EQ(cv::norm(matView(loaded), pixels, cv::NORM_INF), 0.0);
        EXPECT_EQ(entriesOf("."), entries + 1) << "no part is left";
        cv::cvtColor(pixels, matView(image), cv::COLOR_BGR2RGB);
        cvSetImageROI(image.iplImage(), cvRect(1, 1, 2, 2));
    }
}

INSTANTIATE_TEST_SUITE_P(, SavedImageTest, testing::Values("lower.png", "upper.BMP", "long.tiff", "plain.ppm"), NAME);

TEST_F(SavedImageTest, WhatCannotBeSavedIsReportedInOneLineAndChangesNothing) {
    const std::string kept = contentOf("colour.png");
    const std::ptrdiff_t entries = entriesOf(".");
    const auto expectRefused = [](const Image& refused, const std::string& path) {
        EXPECT_EQ(errorsOf([&] { EXPECT_FALSE(refused.save(path)); }), "ERROR: Could not save image: " + path + "\n");
    };
    for (const std::string path : {"", "endless", "a.unknown", "no/where.png", "directory.png", "device.png", ".png/a"})
        expectRefused(image, path);
    expectRefused(Image(), "colour.png");
    expectInLimits(RLIMIT_FSIZE, 1000, [&] { EXPECT_FALSE(image.save("colour.png")); });
    EXPECT_EQ(contentOf("colour.png"), kept);
    EXPECT_EQ(entriesOf("."), entries);
}

}  // namespace
