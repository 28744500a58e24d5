#include "core/cvdata/Image.h"
#include "support/Pixels.h"
#include "support/Program.h"
#include "support/TemporaryDirectory.h"

#include <opencv2/core/core_c.h>
#include <opencv2/imgcodecs.hpp>

#include <iterator>
#include <unistd.h>

using namespace tarvos::core::cvdata;

namespace {

cv::Mat noise(int type, int width = 37, int height = 23) {
    cv::Mat pixels(height, width, type);
    cv::randu(pixels, 0, CV_MAT_DEPTH(type) == CV_16U ? 65536 : 256);
    return pixels;
}

/// A JPEG whose EXIF block asks for a rotation by a quarter turn.
void writeRotatedJpeg(const std::string& name) {
    cv::imwrite(name, noise(CV_8UC3));
    const std::string exif(
        "\xFF\xE1\x00\x22"
        "Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0\0\0\0\0",
        36);
    TemporaryDirectory::write(name, contentOf(name).insert(2, exif));
}

TEST(ImageFileTest, DecodesWhatOpenCvDecodes) {
    const TemporaryDirectory directory;
    cv::imwrite("colour.png", noise(CV_8UC3));
    cv::imwrite("deep.png", noise(CV_16UC3));
    cv::imwrite("grey.png", noise(CV_8UC1));
    cv::imwrite("alpha.png", noise(CV_8UC4));
    cv::imwrite("palette.bmp", noise(CV_8UC1));
    cv::imwrite("row.png", noise(CV_8UC3, 7, 1));
    cv::imwrite("photo.jpg", noise(CV_8UC3));
    writeRotatedJpeg("rotated.jpg");
    TemporaryDirectory::write("half.jpg", contentOf("photo.jpg").substr(0, 1200));
    ASSERT_EQ(cv::imread("rotated.jpg").cols, 23) << "the EXIF block is not understood";

    for (const char* name : {"colour.png", "deep.png", "grey.png", "alpha.png", "palette.bmp", "row.png",
                             "photo.jpg", "rotated.jpg", "half.jpg"}) {
        SCOPED_TRACE(name);
        testing::internal::CaptureStderr();
        const Image image((std::string(name)));
        const cv::Mat expected = cv::imread(name, cv::IMREAD_COLOR | cv::IMREAD_IGNORE_ORIENTATION);
        const std::string heard = testing::internal::GetCapturedStderr();
        const IplImage header = cvIplImage(expected);
        EXPECT_EQ(image.channels(), Image::CHANNELS_BGR);
        EXPECT_EQ(image.bitsPerChannel(), Image::BITS_8U);
        EXPECT_EQ(image.width(), expected.cols);
        EXPECT_EQ(pixelsOf(*image.iplImage()), pixelsOf(header));
        expectSound(image);
        Image rule(image.width(), image.height(), Image::CHANNELS_BGR, Image::BITS_8U);
        const unsigned char* buffer = rule.imageBuffer();
        rule = image;
        EXPECT_EQ(rule.imageBuffer(), buffer) << "rows aligned to 4 bytes, as in an image made from a size";
        // A decoder's warning about a damaged image that still loads is passed on: once here, once by imread
        // itself.
        if (std::string(name) == "half.jpg") {
            EXPECT_EQ(heard.substr(0, heard.size() / 2), heard.substr(heard.size() / 2));
            EXPECT_NE(heard, "");
        } else {
            EXPECT_EQ(heard, "");
        }
    }
}

TEST(ImageFileTest, FailsWithOneLineAndStaysEmpty) {
    const TemporaryDirectory directory;
    cv::imwrite("whole.png", noise(CV_8UC3));
    cv::imwrite("whole.bmp", noise(CV_8UC3));
    for (const char* name : {"whole.png", "whole.bmp"})
        for (const std::size_t size : {12U, 40U, 500U})
            TemporaryDirectory::write(std::to_string(size) + name, contentOf(name).substr(0, size));
    TemporaryDirectory::write("empty.png");
    TemporaryDirectory::write("text.jpg", "This is no image, whatever its name says.");
    std::filesystem::create_directory("directory.png");
    TemporaryDirectory::write("locked.png", contentOf("whole.png"));
    std::filesystem::permissions("locked.png", std::filesystem::perms::none);

    for (const std::string name :
         {"", "missing.png", "empty.png", "text.jpg", "directory.png", "locked.png", "12whole.png",
          "40whole.png", "500whole.png", "12whole.bmp", "40whole.bmp", "500whole.bmp"}) {
        if (name == "locked.png" && access(name.c_str(), R_OK) == 0)
            continue;  // nothing is locked for root
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        Image image(name);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "ERROR: Could not load image: " + name + "\n");
        EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
        EXPECT_EQ(image.imageBuffer(), nullptr);
        EXPECT_EQ(image.iplImage(), nullptr);
        EXPECT_EQ(image.width(), 0);
        image = Image("whole.png");
        expectSound(image);
    }
}

}  // namespace
