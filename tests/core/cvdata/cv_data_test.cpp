#include "core/cvdata/TiledImage.h"
#include "core/cvdata/features/ColorGMM.h"
#include "support/ContractDeath.h"
#include "support/Pixels.h"

using namespace tarvos::core::cvdata;

namespace {

TEST(CvDataTest, TagTellsTheConcreteClass) {
    const TiledImage mosaic(1, 1, 2, 2, Image::CHANNELS_BGR, Image::BITS_8U);
    EXPECT_EQ(mosaic.type(), 0x40000017);
    EXPECT_EQ(ColorGMM(1, 1).type(), 0x4000001F);
}

TEST(CvDataTest, AssignmentThroughTheRootOnlyComparesTags) {
    Image target(4, 3, Image::CHANNELS_GRAY, Image::BITS_8U);
    Image source(8, 8, Image::CHANNELS_BGR, Image::BITS_8U);
    paint(*target.iplImage());
    const auto before = pixelsOf(*target.iplImage());
    target.setTimeStamp(5);
    source.setTimeStamp(9);
    CvData& root = target;
    root = source;
    EXPECT_EQ(pixelsOf(*target.iplImage()), before);
    EXPECT_EQ(target.getTimeStamp(), 5);

    EXPECT_CONTRACT(root = ColorGMM(1, 1), "core/cvdata/CvData.cpp",
                    "virtual tarvos::core::cvdata::CvData& tarvos::core::cvdata::CvData::operator=(const "
                    "tarvos::core::cvdata::CvData&)",
                    "this->mDataReprType == data.mDataReprType");
}

TEST(TimedDataTest, KeepsItsTimeStamp) {
    TimedData data(CvData::REPR_IMAGE);
    EXPECT_EQ(data.getTimeStamp(), 0);
    data.setTimeStamp(-5);
    EXPECT_EQ(data.getTimeStamp(), -5);
}

TEST(VisualFeaturesTest, OnlyTheFlagMovesBetweenFeatures) {
    ColorGMM source(1, 1);
    ColorGMM target(3, 2);
    source.mFlag = true;
    EXPECT_TRUE(VisualFeatures(source).mFlag);
    EXPECT_FALSE(ColorGMM(source).mFlag);
    target = source;
    EXPECT_FALSE(target.mFlag);

    VisualFeatures& base = target;
    VisualFeatures other(CvData::REPR_BLOBS);
    other.mFlag = true;
    base = other;
    EXPECT_TRUE(target.mFlag);
    EXPECT_EQ(target.dimension(), 1U);
    EXPECT_EQ(target.type(), CvData::REPR_COLOR_GMM);
}

}  // namespace
