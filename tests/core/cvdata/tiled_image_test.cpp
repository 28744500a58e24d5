#include "core/cvdata/MatView.h"
#include "core/cvdata/TiledImage.h"
#include "support/Output.h"
#include "support/Pixels.h"

#include <cstdint>
#include <memory>
#include <tuple>

using namespace tarvos::core::cvdata;

namespace {

class TiledImageTest : public testing::Test {
protected:
    TiledImageTest() {
        matView(mosaic).setTo(1);
        paint(*cell.iplImage());
    }

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
    paint(*mosaic.iplImage());
    const auto before = bytesOf(mosaic);
    cvSetImageROI(mosaic.iplImage(), cvRect(1, 1, 2, 2));
    Image deep(161, 120, Image::CHANNELS_BGR, Image::BITS_16U);
    Image grey(161, 120, Image::CHANNELS_GRAY, Image::BITS_8U);
    for (Image* other : {&deep, &grey})
        EXPECT_THROW(mosaic.setCellImage(0, 0, other), cv::Exception);
    EXPECT_EQ(bytesOf(mosaic), before);
    EXPECT_EQ(mosaic.iplImage()->roi, nullptr);
}

TEST_F(TiledImageTest, StopsOnAWrongCell) {
    Image wide(162, 120, Image::CHANNELS_BGR, Image::BITS_8U);
    Image high(161, 121, Image::CHANNELS_BGR, Image::BITS_8U);
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
