#include "support/Output.h"

#include <tarvos/core/cvdata/Image.h>
#include <tarvos/core/cvdata/MatView.h>

#include <climits>
#include <new>
#include <tuple>

using namespace tarvos::core::cvdata;

namespace {

TEST(ImageTest, AssignmentBetweenImagesOfOneGeometryKeepsTheRegionOfInterest) {
    Image target(6, 5, Image::CHANNELS_BGR, Image::BITS_8U);
    cvSetImageROI(target.iplImage(), cvRect(1, 1, 2, 2));
    target = Image(6, 5, Image::CHANNELS_BGR, Image::BITS_8U);
    EXPECT_EQ(cvGetImageROI(target.iplImage()).width, 2);
}

TEST(ImageTest, ImpossibleSizesAreAnAllocationFailureAndChangeNothing) {
    Image image(4, 4, Image::CHANNELS_BGR, Image::BITS_16U);
    matView(image).setTo(cv::Scalar::all(7));
    const std::pair<int, int> sizes[] = {{-1, 5},        {5, -1},      {0, -1},     {-2, -3},
                                         {65536, 65536}, {INT_MAX, 1}, {1, INT_MAX}};
    for (const auto& [width, height] : sizes) {
        EXPECT_THROW(Image(width, height, Image::CHANNELS_BGRA, Image::BITS_64F), std::bad_alloc);
        EXPECT_THROW(image.resizeMemory(width, height), std::bad_alloc);
        EXPECT_EQ(cv::mean(matView(image)), cv::Scalar(7, 7, 7)) << width << "x" << height;
    }
}

struct ImageContractTest : testing::Test {
    Image image{4, 4, Image::CHANNELS_GRAY, Image::BITS_8U};
    IplImage header = *image.iplImage();  // over its buffer
    const Image empty;
};

TEST_F(ImageContractTest, AbortsOnAnInvalidLayoutOrDepth) {
    EXPECT_DEATH(Image(2, 2, static_cast<Image::ColorChannels>(6), Image::BITS_8U),
                 "Assertion `false && \"not supported number of mChannels\"' failed");
    EXPECT_DEATH(Image(2, 2, Image::CHANNELS_BGR, static_cast<Image::BitsPerChannel>(24)), "depth is not implemented!");
    header.depth = IPL_DEPTH_1U;
    EXPECT_DEATH(Image copy(&header), "depth is not implemented!");
}

TEST_F(ImageContractTest, AbortsOnARowAndOnASourceThatDoNotExist) {
    EXPECT_DEATH(image.row(4), "there is no such row");
    EXPECT_DEATH(Image(static_cast<const IplImage*>(nullptr)), "there is no header to copy");
    EXPECT_DEATH(image.updateFromOpencvHeader(nullptr), "there is no header to read");
    EXPECT_DEATH(empty.clone(), "there is no header to copy");
    EXPECT_DEATH(Image copy(empty), "Source image doesn't exist");
    header.imageData = nullptr;
    EXPECT_DEATH(Image copy(&header), "the header has no pixels");
    header.nChannels = image.iplImage()->nChannels = 2;
    EXPECT_DEATH(Image copy(&header), "image->nChannels == 1");
    EXPECT_DEATH(Image copy(image), "image.iplImage\\(\\)->nChannels == 1");
    EXPECT_DEATH(image.clone(), "Image::Image\\(const IplImage ?\\*\\): Assertion `\\(image->nChannels == 1\\)");
}

TEST_F(ImageContractTest, AbortsOnASourceThatExceedsItsBuffer) {
    image.iplImage()->height = 5;
    EXPECT_DEATH(Image copy(image), "description and its pixels are out of step");
    EXPECT_DEATH(image.clone(), "description and its pixels are out of step");
    header.height = 2;
    header.widthStep = 3;  // rows that overlap
    image.updateFromOpencvHeader(&header);
    EXPECT_DEATH(Image() = image, "description and its pixels are out of step");
}

TEST_F(ImageContractTest, AbortsOnADescriptionThatExceedsTheBuffer) {
    for (const auto& [width, height, step] :
         {std::tuple{4, 5, 4}, {4, 4, 5}, {17, 1, 4}, {-1, 4, 4}, {4, -1, 4}, {4, 4, -4}, {4, INT_MAX, INT_MAX}}) {
        SCOPED_TRACE(testing::Message() << width << "x" << height << " in steps of " << step);
        header.width = width;
        header.height = height;
        header.widthStep = step;
        image.updateFromOpencvHeader(&header);
        ASSERT_DEATH(image.updateOpencvHeader(), "description does not fit the buffer");
        ASSERT_DEATH(image.row(0), "there is no such row.\" \\(row 0 of ");
    }
}

}  // namespace
