#include "core/cvdata/MatView.h"
#include "core/cvdata/TiledImage.h"
#include "support/Output.h"

#include <climits>
#include <cstdint>
#include <memory>
#include <new>
#include <tuple>

using namespace tarvos::core::cvdata;

namespace {

struct ImageContractTest : testing::Test {
    const Image empty;
    Image image{4, 4, Image::CHANNELS_GRAY, Image::BITS_8U};
    IplImage header = *image.iplImage();
};

TEST_F(ImageContractTest, StopsOnALayoutOrDepthThatThereIsNot) {
    EXPECT_CONTRACT(Image(2, 2, static_cast<Image::ColorChannels>(6), Image::BITS_8U), "Image::setNofChannels",
                    "false && \"not supported number of mChannels\"");
    EXPECT_CONTRACT(Image(2, 2, Image::CHANNELS_BGR, static_cast<Image::BitsPerChannel>(24)),
                    "Image::updateOpencvHeader", "0 && \"Image: This depth is not implemented!\"");
    header.depth = IPL_DEPTH_1U;
    EXPECT_CONTRACT(Image copy(&header), "Image::updateFromOpencvHeader",
                    "0 && \"Image: This depth is not implemented!\"");
}

TEST_F(ImageContractTest, StopsOnAHeaderThatIsNoImage) {
    EXPECT_DEATH(Image(static_cast<const IplImage*>(nullptr)), "there is no header to copy");
    EXPECT_DEATH(image.updateFromOpencvHeader(nullptr), "there is no header to read");
    header.imageData = nullptr;
    EXPECT_DEATH(Image copy(&header), "the header has no pixels");
    header.nChannels = image.iplImage()->nChannels = 2;
    EXPECT_CONTRACT(Image copy(&header), "Image::Image",
                    "(image->nChannels == 1) || (image->nChannels == 3) || (image->nChannels == 4)");
    EXPECT_CONTRACT(Image copy(image), "Image::Image",
                    "(image.iplImage()->nChannels == 1) || (image.iplImage()->nChannels == 3) || "
                    "(image.iplImage()->nChannels == 4)");
    EXPECT_CONTRACT(Image copy(empty), "Image::Image",
                    "(((image.iplImage()) != __null && ((const IplImage*)(image.iplImage()))->nSize == "
                    "sizeof(IplImage)) && ((IplImage*)image.iplImage())->imageData != __null) && \"Source image "
                    "doesn't exist, can't use the copy constructor 'cvdata::Image(const Image& image)'.\"");
    EXPECT_DEATH(empty.clone(), "an empty image cannot be cloned");
}

TEST_F(ImageContractTest, StopsOnADescriptionThatReachesOutsideTheBuffer) {
    for (const auto& [width, height, step] :
         {std::tuple{4, 5, 4}, {4, 4, 5}, {17, 1, 4}, {-1, 4, 4}, {4, -1, 4}, {4, 4, -4}, {4, INT_MAX, INT_MAX}}) {
        SCOPED_TRACE(testing::Message() << width << "x" << height << " in steps of " << step);
        header.width = width;
        header.height = height;
        header.widthStep = step;
        image.updateFromOpencvHeader(&header);
        EXPECT_DEATH(image.updateOpencvHeader(), "description does not fit the buffer");
    }
}

TEST_F(ImageContractTest, AStrideThatOpencvRejectsIsItsErrorAndChangesNothing) {
    image.setChannels(Image::CHANNELS_BGR);  // four rows of 12 bytes, 4 apart
    cvSetImageROI(image.iplImage(), cvRect(1, 1, 2, 2));
    EXPECT_THROW(image.updateOpencvHeader(), cv::Exception);
    EXPECT_EQ(image.iplImage()->nChannels, 1);
    EXPECT_EQ(cvGetImageROI(image.iplImage()).width, 2);
    for (header.height = 1; header.height <= 2; ++header.height)
        EXPECT_THROW((header.widthStep = 3, Image(&header)), cv::Exception);
}

TEST_F(ImageContractTest, StopsOnCopyingWhatIsOutOfStep) {
    Image target;
    image.setChannels(Image::CHANNELS_BGRA);
    EXPECT_DEATH(target = image, "out of step");
    EXPECT_DEATH(target = std::move(image), "out of step");
    image.setChannels(Image::CHANNELS_GRAY);
    image.iplImage()->height = 40;
    EXPECT_DEATH(Image copy(image), "out of step") << "nothing is read behind the buffer";
}

TEST(ImageTest, AnAssignmentKeepsTheRegionOfInterestOrTakesNone) {
    Image image(6, 5, Image::CHANNELS_BGR, Image::BITS_8U);
    cvSetImageROI(image.iplImage(), cvRect(1, 1, 2, 2));
    image = Image(6, 5, Image::CHANNELS_BGR, Image::BITS_8U);
    EXPECT_EQ(cvGetImageROI(image.iplImage()).width, 2);
    Image target(3, 3, Image::CHANNELS_GRAY, Image::BITS_8U);
    target = std::move(image);
    EXPECT_EQ(target.iplImage()->roi, nullptr) << "a copy would have none";
}

TEST(ImageTest, ImpossibleSizesAreAnAllocationFailureAndLoseNothing) {
    Image image(5, 4, Image::CHANNELS_BGR, Image::BITS_16U);
    matView(image).setTo(cv::Scalar::all(7));
    const std::pair<int, int> sizes[] = {{-1, 5},        {5, -1},      {0, -1},     {-2, -3},
                                         {65536, 65536}, {INT_MAX, 1}, {1, INT_MAX}};
    for (const auto& [width, height] : sizes) {
        EXPECT_THROW(Image(width, height, Image::CHANNELS_BGRA, Image::BITS_64F), std::bad_alloc);
        EXPECT_THROW(image.resizeMemory(width, height), std::bad_alloc);
        EXPECT_EQ(cv::mean(matView(image)), cv::Scalar(7, 7, 7)) << width << "x" << height;
    }
}

TEST(MatViewTest, SharesPixelsAndCopiesThem) {
    Image image(6, 5, Image::CHANNELS_BGR, Image::BITS_16U);
    cvSetImageROI(image.iplImage(), cvRect(1, 1, 2, 2));
    matView(image).setTo(cv::Scalar(1, 2, 3));
    EXPECT_EQ(matView(std::as_const(image)).at<cv::Vec3w>(4, 5), cv::Vec3w(1, 2, 3)) << "outside the region, too";
    const Image part = imageOf(matView(image)(cv::Rect(2, 1, 3, 2)));
    EXPECT_EQ(part.width(), 3);
    EXPECT_EQ(matView(part).at<cv::Vec3w>(1, 2), cv::Vec3w(1, 2, 3));
    const Image empty = imageOf(cv::Mat());
    EXPECT_TRUE(empty.empty());
    EXPECT_TRUE(matView(empty).empty());
}

struct TiledImageTest : testing::Test {
    TiledImage mosaic{2, 3, 161, 120, Image::CHANNELS_BGR, Image::BITS_8U};
    Image cell{161, 120, Image::CHANNELS_BGR, Image::BITS_8U};
};

TEST_F(TiledImageTest, IsOneImage) {
    EXPECT_EQ(matView(mosaic).size(), cv::Size(483, 240));
    EXPECT_EQ(mosaic.type(), 0x40000017);
    for (const std::size_t rows : {SIZE_MAX, SIZE_MAX / 120, std::size_t{1} << 31})
        EXPECT_THROW(TiledImage(rows, 3, 160, 120, Image::CHANNELS_BGR, Image::BITS_8U), std::bad_alloc);
}

TEST_F(TiledImageTest, WhatOpencvRejectsLeavesNoTrace) {
    matView(mosaic).setTo(cv::Scalar::all(7));
    cvSetImageROI(mosaic.iplImage(), cvRect(1, 1, 2, 2));
    Image deep(161, 120, Image::CHANNELS_BGR, Image::BITS_16U), grey(161, 120, Image::CHANNELS_GRAY, Image::BITS_8U);
    for (Image* other : {&deep, &grey})
        EXPECT_THROW(mosaic.setCellImage(0, 0, other), cv::Exception);
    EXPECT_EQ(cv::mean(matView(mosaic)), cv::Scalar(7, 7, 7));
    EXPECT_EQ(mosaic.iplImage()->roi, nullptr);
}

TEST_F(TiledImageTest, StopsOnAWrongCell) {
    Image wide(162, 120, Image::CHANNELS_BGR, Image::BITS_8U), high(161, 121, Image::CHANNELS_BGR, Image::BITS_8U);
    const std::tuple<std::size_t, std::size_t, Image*, std::string> cases[] = {
        {2, 0, &cell, "(cellRow < mRows) && \"cell row index is out of range\""},
        {0, 3, &cell, "(cellCol < mCols) && \"cell col index is out of range\""},
        {0, 0, nullptr, "img != __null"},
        {0, 0, &wide, "img->width() == mCellWidth"},
        {0, 0, &high, "img->height() == mCellHeight"}};
    for (const auto& [row, col, image, condition] : cases)
        EXPECT_CONTRACT(mosaic.setCellImage(row, col, image), "TiledImage::setCellImage", condition);
    const TiledImage moved(std::move(mosaic));
    EXPECT_TRUE(mosaic.empty());
    EXPECT_DEATH(mosaic.setCellImage(0, 0, &cell), "cell row index is out of range");
    mosaic = moved;
    static_cast<Image&>(mosaic) = cell;
    EXPECT_DEATH(mosaic.setCellImage(0, 0, &cell), "resized through its base");
}

TEST_F(TiledImageTest, AssignmentKeepsHeaderAndTimeStampAndCloningGivesAPlainImage) {
    TiledImage target(1, 1, 7, 5, Image::CHANNELS_GRAY, Image::BITS_32F);
    const IplImage* header = target.iplImage();
    target.setTimeStamp(9);
    target = mosaic;
    EXPECT_EQ(target.iplImage(), header);
    EXPECT_EQ(target.getTimeStamp(), 9);
    EXPECT_EQ(dynamic_cast<TiledImage*>(std::unique_ptr<Image>(mosaic.clone()).get()), nullptr);
}

}  // namespace
