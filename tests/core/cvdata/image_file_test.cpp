#include "core/cvdata/MatView.h"
#include "support/Output.h"
#include "support/Pixels.h"
#include "support/Program.h"
#include "support/TemporaryDirectory.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <fcntl.h>
#include <map>
#include <regex>
#include <sys/stat.h>
#include <unistd.h>

using namespace tarvos::core::cvdata;
namespace fs = std::filesystem;

namespace {

using Maker = std::function<void(const std::string& name)>;

cv::Mat noise(int type) {
    cv::Mat pixels(23, 37, type);
    cv::randu(pixels, 0, CV_MAT_DEPTH(type) == CV_32F ? 1 : 256);
    return pixels;
}
Maker picture(const cv::Mat& pixels) {
    return [=](const std::string& name) { cv::imwrite(name, pixels); };
}
Maker file(const std::string& content) {
    return [=](const std::string& name) { TemporaryDirectory::write(name, content); };
}
/// What is in a file is told by the first word of its name.
const std::map<std::string, Maker> MAKERS = {
    {"colour", picture(noise(CV_8UC3))},
    {"float", picture(noise(CV_32FC3))},
    {"cut",
     [](const std::string& name) {
         cv::imwrite(name, noise(CV_32FC3));
         fs::resize_file(name, 1200);
     }},
    {"missing", [](const std::string& /*name*/) {}},
    {"directory", [](const std::string& name) { fs::create_directory(name); }},
    {"pipe", [](const std::string& name) { mkfifo(name.c_str(), 0600); }},
    {"device", [](const std::string& name) { fs::create_symlink("/dev/zero", name); }},
    {"text", file("No image, whatever its name says.")},
    {"sizeless", file("#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 0 +X 9\n")},
    {"formatless", file("#?RADIANCE\n\n-Y 1 +X 1\nabcd")},
    {"empty", file("")}};

void make(const std::string& name) {
    MAKERS.at(name.substr(0, name.find('.')))(name);
}

std::ptrdiff_t entriesOf(const std::string& path) {
    return std::distance(fs::directory_iterator(path), {});
}

const auto NAME_OF_FILE = [](const testing::TestParamInfo<const char*>& test) {
    return std::regex_replace(test.param, std::regex("\\."), "_");
};

class ImageFileTest : public testing::TestWithParam<const char*> {
protected:
    /// Loads the file @p name, which is to make itself heard by @p errors.
    static Image load(const std::string& name, const testing::Matcher<const std::string&>& errors) {
        Image image;
        EXPECT_THAT(errorsOf([&] { image = Image(name); }), errors);
        return image;
    }
    static std::string complaint(const std::string& name) { return "ERROR: Could not load image: " + name + "\n"; }

    const TemporaryDirectory directory;
};

TEST_F(ImageFileTest, AGoodFileIsLoadedSilentlyIntoRowsByTheRule) {
    make("colour.png");
    Image image = load("colour.png", "");
    const unsigned char* buffer = image.imageBuffer();
    image = Image(image.width(), image.height(), Image::CHANNELS_BGR, Image::BITS_8U);
    EXPECT_EQ(image.imageBuffer(), buffer);
}

using NoImageFileTest = ImageFileTest;

TEST_P(NoImageFileTest, IsReportedInOneLineAtOnce) {
    make(GetParam());
    EXPECT_TRUE(load(GetParam(), complaint(GetParam())).empty());
    const std::ptrdiff_t descriptors = entriesOf("/proc/self/fd");
    EXPECT_TRUE(load(GetParam(), complaint(GetParam())).empty());
    EXPECT_EQ(entriesOf("/proc/self/fd"), descriptors);
}

INSTANTIATE_TEST_SUITE_P(, NoImageFileTest,
                         testing::Values("missing.png", "empty.png", "text.jpg", "directory.png", "pipe.png",
                                         "device.png", "cut.hdr", "sizeless.hdr", "formatless.hdr"),
                         NAME_OF_FILE);

TEST_F(ImageFileTest, AnEmptyPathAndANulByteNameNothing) {
    make("colour.png");
    for (const std::string& name : {std::string(), std::string("colour.png\0x", 12)})
        EXPECT_TRUE(load(name, complaint(name)).empty());
}

TEST_F(ImageFileTest, OfADamagedImageTheLineIsTheLast) {
    for (const std::string name : {"colour.png", "colour.bmp"}) {
        for (const std::size_t size : {12U, 40U, 500U}) {
            make(name);
            TemporaryDirectory::write(name, contentOf(name).substr(0, size));
            EXPECT_TRUE(load(name, testing::EndsWith(complaint(name))).empty());
        }
    }
}

TEST_F(ImageFileTest, GoodFilesLoadWhereLittleIsLeft) {
    make("colour.png");
    make("float.hdr");
#ifndef __SANITIZE_ADDRESS__  // the sanitizer wants descriptors, too
    const int lowest = open("/dev/null", O_RDONLY);
    close(lowest);
    expectInLimits(RLIMIT_NOFILE, static_cast<rlim_t>(lowest) + 1, [] { EXPECT_FALSE(Image("colour.png").empty()); });
#endif
    for (const char* name : {"colour.png", "float.hdr"})
        expectInLimits(RLIMIT_FSIZE, 0, [&] { EXPECT_FALSE(Image(name).empty()) << name; });
}

class SavedImageTest : public ImageFileTest {
protected:
    Image image = imageOf(noise(CV_8UC3));
};

TEST_P(SavedImageTest, IsLoadedAgainWhateverItsLayoutAndRegionOfInterest) {
    const auto pixels = pixelsOf(*image.iplImage());
    EXPECT_EQ(errorsOf([&] { EXPECT_TRUE(image.save(GetParam())); }), "");
    EXPECT_EQ(pixelsOf(*Image(GetParam()).iplImage()), pixels);
    EXPECT_EQ(entriesOf("."), 1) << "no part is left";
    cv::cvtColor(matView(image), matView(image), cv::COLOR_BGR2RGB);
    image.setChannels(Image::CHANNELS_RGB);
    cvSetImageROI(image.iplImage(), cvRect(1, 1, 2, 2));
    EXPECT_TRUE(image.save(GetParam()));
    EXPECT_EQ(pixelsOf(*Image(GetParam()).iplImage()), pixels);
}

INSTANTIATE_TEST_SUITE_P(, SavedImageTest, testing::Values("a.png", "a.BMP", "a.tiff", "a.ppm"), NAME_OF_FILE);

TEST_F(SavedImageTest, WhatCannotBeSavedIsReportedInOneLineAndChangesNothing) {
    TemporaryDirectory::write("kept.png", "kept");
    make("directory.png");
    make("device.png");
    const auto expectRefused = [](const Image& refused, const std::string& path) {
        EXPECT_EQ(errorsOf([&] { EXPECT_FALSE(refused.save(path)); }), "ERROR: Could not save image: " + path + "\n");
    };
    for (const std::string path : {"", "endless", "a.unknown", "no/where.png", "directory.png", "device.png", ".png/a"})
        expectRefused(image, path);
    expectRefused(Image(), "kept.png");
    expectInLimits(RLIMIT_FSIZE, 1000, [&] { EXPECT_FALSE(image.save("kept.png")); });
    EXPECT_EQ(contentOf("kept.png"), "kept");
    EXPECT_EQ(entriesOf("."), 3);
}

}  // namespace
