#include "support/Output.h"

#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/core/cvdata/TiledImage.h>

#include <csignal>
#include <cstring>
#include <utility>

using namespace tarvos::core::cvdata;

namespace {

struct TiledImageTest : testing::Test {
    TiledImage mosaic{2, 3, 161, 120, Image::CHANNELS_BGR, Image::BITS_8U};
    Image cell{161, 120, Image::CHANNELS_BGR, Image::BITS_8U};
};

TEST_F(TiledImageTest, ARegionOfInterestOfTheCellIsIgnoredAndAnotherKindOfPixelsRejected) {
    matView(mosaic).setTo(cv::Scalar::all(0));
    matView(cell).setTo(cv::Scalar::all(9));
    cvSetImageROI(cell.iplImage(), cvRect(1, 1, 2, 2));
    mosaic.setCellImage(0, 0, &cell);
    Image grey(161, 120, Image::CHANNELS_GRAY, Image::BITS_8U);
    EXPECT_THROW(mosaic.setCellImage(0, 1, &grey), cv::Exception);
    EXPECT_EQ(cv::sum(matView(mosaic))[0], 9.0 * 161 * 120);
}

TEST_F(TiledImageTest, AssignmentKeepsTheLayoutForAnUnknownChannelSequence) {
    TiledImage target(1, 1, 5, 5, Image::CHANNELS_RGB, Image::BITS_8U);
    std::memcpy(mosaic.iplImage()->channelSeq, "YUV", 4);
    target = mosaic;
    EXPECT_EQ(target.channels(), Image::CHANNELS_RGB);
    target = TiledImage(1, 1, 5, 5, Image::CHANNELS_RGB, Image::BITS_8U);
    EXPECT_EQ(target.channels(), Image::CHANNELS_BGR) << "what OpenCV's header says";
}

TEST_F(TiledImageTest, AbortsOnAWrongCell) {
    Image wide(162, 120, Image::CHANNELS_BGR, Image::BITS_8U), high(161, 121, Image::CHANNELS_BGR, Image::BITS_8U);
    EXPECT_DEATH(mosaic.setCellImage(2, 0, &cell), "cell row index is out of range");
    EXPECT_DEATH(mosaic.setCellImage(0, 3, &cell), "cell col index is out of range");
    EXPECT_DEATH(mosaic.setCellImage(0, 0, &wide), "img->width\\(\\) == mCellWidth");
    EXPECT_DEATH(mosaic.setCellImage(0, 0, &high), "img->height\\(\\) == mCellHeight");
}

TEST_F(TiledImageTest, ABrokenContractIsOneLineInTheFormOfAssert) {
    EXPECT_EXIT(
        mosaic.setCellImage(0, 0, nullptr), testing::KilledBySignal(SIGABRT),
        testing::MatchesRegex("tarvos_tests: core/cvdata/TiledImage.cpp:[0-9]+: [^\n]*TiledImage::setCellImage\\("
                              "[^\n]*\\): Assertion `img != __null' failed.\n"));
}

TEST_F(TiledImageTest, AbortsWhereTheGridNoLongerFitsTheImage) {
    TiledImage described(mosaic);
    described.resizeMemory(2, 2);
    described.updateFromOpencvHeader(mosaic.iplImage());
    EXPECT_DEATH(described.setCellImage(1, 1, &cell), "resized through its base");
    static_cast<Image&>(mosaic) = cell;
    EXPECT_DEATH(mosaic.setCellImage(0, 0, &cell), "resized through its base");
    const TiledImage moved(std::move(mosaic));
    EXPECT_DEATH(mosaic.setCellImage(0, 0, &cell), "resized through its base");
}

}  // namespace
