#include "core/cvdata/Image.h"
#include "core/cvdata/features/ColorGMM.h"
#include "support/ContractDeath.h"
#include "support/Pixels.h"

using namespace tarvos::core::cvdata;

namespace {

TEST(CvDataTest, AssignmentThroughTheRootOnlyComparesTags) {
    Image target(4, 3, Image::CHANNELS_GRAY, Image::BITS_8U);
    const Image source(8, 8, Image::CHANNELS_BGR, Image::BITS_8U);
    paint(*target.iplImage());
    const auto before = pixelsOf(*target.iplImage());
    target.setTimeStamp(-5);
    CvData& root = target;
    root = source;
    EXPECT_EQ(pixelsOf(*target.iplImage()), before);
    EXPECT_EQ(target.getTimeStamp(), -5);
    EXPECT_EQ(target.type(), 0x40000017);
    const std::string type = "tarvos::core::cvdata::CvData";
    EXPECT_CONTRACT(root = ColorGMM(1, 1), "core/cvdata/CvData.cpp",
                    "virtual " + type + "& " + type + "::operator=(const " + type + "&)",
                    "this->mDataReprType == data.mDataReprType");
}

TEST(VisualFeaturesTest, OnlyTheFlagMovesBetweenFeatures) {
    VisualFeatures source(CvData::REPR_BLOBS);
    ColorGMM target(3, 2);
    source.mFlag = true;
    static_cast<VisualFeatures&>(target) = source;
    EXPECT_TRUE(target.mFlag && VisualFeatures(target).mFlag);
    EXPECT_FALSE(ColorGMM(target).mFlag);
    EXPECT_EQ(target.type(), 0x4000001F);
}

}  // namespace
