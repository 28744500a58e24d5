#include "support/Files.h"
#include "support/Output.h"

#include <opencv2/imgcodecs.hpp>
#include <tarvos/core/cvdata/MatView.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <dlfcn.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace tarvos::core::cvdata;
namespace fs = std::filesystem;

namespace {

/// Pixels that compress neither to nothing nor all alike.
cv::Mat noise(int width, int height, int type) {
    cv::Mat pixels(height, width, type);
    cv::randu(pixels, 0, 256);
    return pixels;
}

std::string complaint(const std::string& path) {
    return "ERROR: Could not load image: " + path + "\n";
}

bool isEqual(const cv::Mat& a, const cv::Mat& b) {
    return a.size() == b.size() && (a.empty() || cv::norm(a, b, cv::NORM_INF) == 0.0);
}

struct ImageFileTest : testing::Test {
    const TemporaryDirectory directory;
    const cv::Mat pixels = noise(37, 23, CV_8UC3);
    Image image = imageOf(pixels);

    ImageFileTest() { cv::imwrite("colour.png", pixels); }
};

TEST_F(ImageFileTest, AGreyFileGetsThreeEqualChannels) {
    ASSERT_TRUE(cv::imwrite("grey.pfm", cv::Mat(3, 5, CV_32FC1, cv::Scalar(7))));  // of which OpenCV leaves one
    const Image loaded("grey.pfm");
    EXPECT_EQ(cv::mean(matView(loaded)),
              cv::mean(cv::imread("grey.pfm", cv::IMREAD_ANYCOLOR))[0] * cv::Scalar(1, 1, 1));
}

TEST_F(ImageFileTest, AnExifOrientationIsIgnored) {
    ASSERT_TRUE(image.save("plain.jpg"));
    const std::string plain = contentOf("plain.jpg");
    // After the start of the image, a segment that says that it is to be turned by 90 degrees.
    const std::string turned(
        "\xFF\xE1\0\x22"
        "Exif\0\0"
        "MM\0*\0\0\0\x08\0\1\1\x12\0\3\0\0\0\1\0\6\0\0\0\0\0\0",
        36);
    writeFile("turned.jpg", plain.substr(0, 2) + turned + plain.substr(2));
    const Image loaded("turned.jpg");
    EXPECT_EQ(loaded.width(), 37);
    EXPECT_TRUE(isEqual(matView(loaded), cv::imread("plain.jpg")));
}

TEST_F(ImageFileTest, WhatIsNoImageIsReportedInOneLineAndLeavesNoDescriptorOpen) {
    writeFile("text", "No image.");
    writeFile("dicom", std::string(128, '\0') + "DICM");
    writeFile("empty");
    fs::create_directory("directory.png");
    fs::create_symlink("/dev/zero", "device.png");
    mkfifo("pipe", 0600);
    const std::ptrdiff_t descriptors = entriesOf("/proc/self/fd");
    const std::string paths[] = {"",     "missing.png", "empty", "text",        "directory.png",
                                 "pipe", "device.png",  "dicom", {"text\0x", 6}};
    for (const std::string& path : paths) {
        EXPECT_EQ(captureStderr([&] { EXPECT_TRUE(Image(path).empty()); }), complaint(path));
        EXPECT_EQ(entriesOf("/proc/self/fd"), descriptors) << path;
    }
}

// In a process that has loaded no image before, as ctest runs it.
TEST_F(ImageFileTest, AThreadAndAPluginThatTheLoaderHoldsMayBothLoadTheirFirstImage) {
    const auto loadTwice = [] {
        alarm(30);  // exits where they wait for each other
        bool isLoaded = false;
        std::thread thread([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            isLoaded = !Image("colour.png").empty();
        });
        const void* plugin = dlopen(IMAGE_PLUGIN, RTLD_NOW);
        thread.join();
        std::_Exit(plugin != nullptr && isLoaded ? 0 : 1);
    };
    EXPECT_EXIT(loadTwice(), testing::ExitedWithCode(0), "");
}

TEST_F(ImageFileTest, ASavedImageLoadsAgainUnderAnyName) {
    for (const std::string& name : {std::string("upper.BMP"), std::string(251, 'n') + ".bmp"}) {
        EXPECT_TRUE(image.save(name));
        const Image loaded(name);
        EXPECT_TRUE(isEqual(matView(loaded), pixels)) << name;
    }
    EXPECT_EQ(entriesOf("."), 3) << "a part is left";
}

TEST_F(ImageFileTest, SavingReplacesALinkToAFileAndNotItsTarget) {
    const std::string target = contentOf("colour.png");
    fs::create_symlink("colour.png", "link.bmp");
    EXPECT_TRUE(image.save("link.bmp"));
    EXPECT_FALSE(fs::is_symlink("link.bmp"));
    EXPECT_TRUE(contentOf("colour.png") == target) << "the target has changed";
    const Image loaded("link.bmp");
    EXPECT_TRUE(isEqual(matView(loaded), pixels));
}

TEST_F(ImageFileTest, SavingWorksInADirectoryOfTheLongestName) {
    std::string folder = directory.path();
    while (folder.size() < 4085) {
        folder += "/" + std::string(std::min<std::size_t>(4085 - folder.size(), 250), 'd');
        fs::create_directory(folder);
    }
    EXPECT_TRUE(image.save(folder + "/a.bmp"));
}

TEST_F(ImageFileTest, SavingKeepsThePermissionsOfTheFileThatItReplaces) {
    for (const mode_t mode : {0640U, 0751U}) {
        chmod("colour.png", mode);
        EXPECT_TRUE(image.save("colour.png"));
        std::ostringstream expected;
        expected << std::oct << mode;
        EXPECT_EQ(modeOf("colour.png"), expected.str());
    }
    const mode_t mask = umask(027);
    EXPECT_TRUE(image.save("new.png"));
    umask(mask);
    EXPECT_EQ(modeOf("new.png"), "640") << "as any new file";
}

TEST_F(ImageFileTest, WhatCannotBeSavedIsReportedInOneLineAndChangesNothing) {
    fs::create_directory("directory.png");
    fs::create_symlink("/dev/zero", "device.png");
    const std::string kept = contentOf("colour.png");
    const std::ptrdiff_t entries = entriesOf(".");
    const auto expectRefused = [](const Image& refused, const std::string& path, const std::string& reason) {
        EXPECT_EQ(captureStderr([&] { EXPECT_FALSE(refused.save(path)); }),
                  "ERROR: Could not save image: " + path + ": " + reason + "\n");
    };
    for (const std::string path : {"", "no_ending", ".png/a"})
        expectRefused(image, path, "the name has no extension");
    for (const std::string extension : {".unknown", ".hdr"})
        expectRefused(image, "a" + extension, extension + " is not the extension of a format that can be written");
    for (const std::string path : {"directory.png", "device.png"})
        expectRefused(image, path, "the name belongs to something other than a regular file");
    expectRefused(image, "no/where.png", std::strerror(ENOENT));
    expectRefused(image, "colour.png/a.png", std::strerror(ENOTDIR));
    expectRefused(image, std::string(256, 'n') + ".png", std::strerror(ENAMETOOLONG));
    expectRefused(imageOf(noise(3, 3, CV_8UC1)), "grey.ppm", "OpenCV does not write such pixels as .ppm");
    expectRefused(Image(), "colour.png", "the image is empty");
    expectRefused(image, std::string("colour.png\0.png", 15), "the name contains a NUL byte");
    expectFailureOnAFullDisk("save", [&] { return image.save("colour.png"); });
    EXPECT_EQ(contentOf("colour.png"), kept);
    EXPECT_EQ(entriesOf("."), entries);
}

}  // namespace
