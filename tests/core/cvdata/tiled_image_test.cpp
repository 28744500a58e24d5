#include "core/cvdata/TiledImage.h"
#include "support/ContractDeath.h"
#include "support/Pixels.h"

#include <opencv2/core.hpp>
#include <opencv2/core/core_c.h>

#include <cstdint>
#include <memory>
#include <tuple>

using namespace tarvos::core::cvdata;

namespace {

class TiledImageTest : public testing::Test {
protected:
    TiledImageTest() {
        cvSet(mosaic.iplImage(), cvScalar(1, 1, 1));
        paint(*cell.iplImage());
    }

    static cv::Mat view(const Image& image) { return cv::cvarrToMat(image.iplImage()); }

    TiledImage mosaic{2, 3, 160, 120, Image::CHANNELS_BGR, Image::BITS_8U};
    Image cell{160, 120, Image::CHANNELS_BGR, Image::BITS_8U};
};

TEST_F(TiledImageTest, IsOneImage) {
    EXPECT_EQ(view(mosaic).size(), cv::Size(480, 240));
    for (const std::size_t rows : {SIZE_MAX, SIZE_MAX / 120, std::size_t{1} << 31})
        EXPECT_THROW(TiledImage(rows, 3, 160, 120, Image::CHANNELS_BGR, Image::BITS_8U), std::bad_alloc);
}

TEST_F(TiledImageTest, SetsOneCellAndNoOther) {
    cv::Mat expected = view(mosaic).clone();
    view(cell).copyTo(expected(cv::Rect(320, 120, 160, 120)));
    mosaic.setCellImage(1, 2, &cell);
    EXPECT_EQ(cv::norm(view(mosaic), expected, cv::NORM_INF), 0);
    Image deep(160, 120, Image::CHANNELS_BGR, Image::BITS_16U);
    EXPECT_THROW(mosaic.setCellImage(0, 0, &deep), cv::Exception);
    EXPECT_EQ(mosaic.iplImage()->roi, nullptr);
    EXPECT_EQ(cv::norm(view(mosaic), expected, cv::NORM_INF), 0) << "what OpenCV rejects leaves no trace";
}

TEST_F(TiledImageTest, StopsOnAWrongCell) {
    Image wide(161, 120, Image::CHANNELS_BGR, Image::BITS_8U);
    Image high(160, 121, Image::CHANNELS_BGR, Image::BITS_8U);
    const std::tuple<std::size_t, std::size_t, Image*, std::string> cases[] = {
        {2, 0, &cell, "(cellRow < mRows) && \"cell row index is out of range\""},
        {0, 3, &cell, "(cellCol < mCols) && \"cell col index is out of range\""},
        {0, 0, nullptr, "img != __null"},
        {0, 0, &wide, "img->width() == mCellWidth"},
        {0, 0, &high, "img->height() == mCellHeight"}};
    for (const auto& [row, col, image, condition] : cases)
        EXPECT_CONTRACT(mosaic.setCellImage(row, col, image), "core/cvdata/TiledImage.cpp",
                        "void tarvos::core::cvdata::TiledImage::setCellImage(size_t, size_t, "
                        "tarvos::core::cvdata::Image*)",
                        condition);
    static_cast<Image&>(mosaic) = cell;
    EXPECT_DEATH(mosaic.setCellImage(0, 0, &cell), "resized through its base");
}

TEST_F(TiledImageTest, CopiesAndAssignmentsCarryTheGrid) {
    mosaic.setCellImage(0, 1, &cell);
    TiledImage target(1, 1, 7, 5, Image::CHANNELS_GRAY, Image::BITS_32F);
    const IplImage* header = target.iplImage();
    target.setTimeStamp(9);
    target = mosaic;
    target = static_cast<const TiledImage&>(target);
    EXPECT_EQ(target.iplImage(), header);
    EXPECT_EQ(target.getTimeStamp(), 9);
    TiledImage moved(std::move(target));
    for (TiledImage* grid : {&target, &moved}) {
        EXPECT_EQ(pixelsOf(*grid->iplImage()), pixelsOf(*mosaic.iplImage()));
        grid->setCellImage(1, 2, &cell);
        expectSound(*grid);
    }
    EXPECT_EQ(dynamic_cast<TiledImage*>(std::unique_ptr<Image>(mosaic.clone()).get()), nullptr);
}

}  // namespace
