#include "core/cvdata/Image.h"
#include "support/Pixels.h"
#include "support/Program.h"
#include "support/TemporaryDirectory.h"

#include <opencv2/core/core_c.h>
#include <opencv2/imgcodecs.hpp>

#include <iterator>
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

    for (const std::string name : {"colour.png", "deep.png", "grey.png", "alpha.png", "palette.bmp", "row.png",
                                   "photo.jpg", "rotated.jpg", "half.jpg"}) {
        SCOPED_TRACE(name);
        testing::internal::CaptureStderr();
        const Image image(name);
        const std::string heard = testing::internal::GetCapturedStderr();
        EXPECT_EQ(heard.empty(), name != "half.jpg") << "a damaged image that still loads: the decoder's warning";
        const cv::Mat expected = cv::imread(name, cv::IMREAD_COLOR | cv::IMREAD_IGNORE_ORIENTATION);
        EXPECT_EQ(pixelsOf(*image.iplImage()), pixelsOf(cvIplImage(expected)));
        expectSound(image);
        Image sized(image.width(), image.height(), Image::CHANNELS_BGR, Image::BITS_8U);
        const unsigned char* buffer = sized.imageBuffer();
        sized = image;
        EXPECT_EQ(sized.imageBuffer(), buffer) << "rows aligned to 4 bytes, as in an image made from a size";
    }
}

TEST(ImageFileTest, FailsWithOneLineAndStaysEmpty) {
    const TemporaryDirectory directory;
    for (const std::string name : {"whole.png", "whole.bmp"}) {
        cv::imwrite(name, noise(CV_8UC3));
        for (const std::size_t size : {12U, 40U, 500U})
            TemporaryDirectory::write(std::to_string(size) + name, contentOf(name).substr(0, size));
    }
    TemporaryDirectory::write("empty.png");
    TemporaryDirectory::write("text.jpg", "This is no image, whatever its name says.");
    std::filesystem::create_directory("directory.png");
    for (const std::string name : {"", "missing.png", "empty.png", "text.jpg", "directory.png", "12whole.png",
                                   "40whole.png", "500whole.png", "12whole.bmp", "40whole.bmp", "500whole.bmp"}) {
        testing::internal::CaptureStderr();
        Image image(name);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "ERROR: Could not load image: " + name + "\n");
        EXPECT_EQ(image.imageBuffer(), nullptr);
        EXPECT_EQ(image.iplImage(), nullptr);
        image = Image("whole.png");
        expectSound(image);
    }
}

}  // namespace
