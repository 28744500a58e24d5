#include "core/cvdata/TiledImage.h"
#include "core/cvdata/features/Blobs.h"
#include "core/cvdata/features/ColorGMM.h"
#include "core/cvdata/features/ColourHist2d.h"
#include "core/cvdata/features/VisContourSamplePts.h"
#include "support/ContractDeath.h"
#include "support/Pixels.h"

#include <type_traits>

using namespace tarvos::core::cvdata;

namespace {

TEST(CvDataTest, AssignmentThroughTheRootOnlyComparesTags) {
    Image target(4, 3, Image::CHANNELS_GRAY, Image::BITS_8U);
    const Image source(8, 8, Image::CHANNELS_BGR, Image::BITS_8U);
    paint(*target.iplImage());
    const auto before = bytesOf(target);
    target.setTimeStamp(-5);
    CvData& root = target;
    root = source;
    EXPECT_EQ(bytesOf(target), before);
    EXPECT_EQ(target.getTimeStamp(), -5);
    const std::string type = "tarvos::core::cvdata::CvData";
    EXPECT_CONTRACT(root = ColorGMM(1, 1), "core/cvdata/CvData.cpp",
                    "virtual " + type + "& " + type + "::operator=(const " + type + "&)",
                    "this->mDataReprType == data.mDataReprType");
}

TEST(CvDataTest, TagsTellTheKind) {
    EXPECT_EQ(ColourHist2d(1, 1, 1).type(), 0x40000016);
    EXPECT_EQ(Image().type(), 0x40000017);
    EXPECT_EQ(VisContourSamplePts().type(), 0x4000001C);
    EXPECT_EQ(Blobs().type(), 0x4000001D);
    EXPECT_EQ(ColorGMM(1, 1).type(), 0x4000001F);
}

template <typename Data, typename StorageOf>
void expectToMoveWithoutCopying(Data source, StorageOf storageOf) {
    static_assert(std::is_nothrow_move_constructible_v<Data> && std::is_nothrow_move_assignable_v<Data>);
    const void* storage = storageOf(source);
    Data moved(std::move(source));
    source = std::move(moved);
    EXPECT_EQ(storageOf(source), storage);
}

TEST(CvDataTest, MovesWithoutCopying) {
    Blobs blobs;
    blobs.addBlob();
    expectToMoveWithoutCopying(blobs, [](const Blobs& moved) { return moved.mBlobs.data(); });
    expectToMoveWithoutCopying(ColorGMM(2, 2), [](const ColorGMM& moved) { return moved.mMixtures.at(1).get(); });
    expectToMoveWithoutCopying(ColourHist2d(2, 2, 2), [](const ColourHist2d& moved) { return moved.data().data(); });
    expectToMoveWithoutCopying(TiledImage(2, 2, 4, 4, Image::CHANNELS_GRAY, Image::BITS_8U),
                               [](const TiledImage& moved) { return moved.imageBuffer(); });
}

TEST(VisualFeaturesTest, BetweenFeaturesOnlyTheFlagMoves) {
    VisualFeatures source(CvData::REPR_BLOBS);
    ColorGMM target(3, 2);
    source.mFlag = true;
    static_cast<VisualFeatures&>(target) = source;
    EXPECT_TRUE(target.mFlag);
    EXPECT_TRUE(VisualFeatures(target).mFlag);
    EXPECT_EQ(target.type(), 0x4000001F);
}

/// The flag of @p marked, another feature of the class, in every way of giving it away.
template <typename Feature>
void expectFlagToStay(Feature marked, Feature target) {
    marked.mFlag = true;
    target = marked;
    EXPECT_FALSE(target.mFlag) << "assigned";
    EXPECT_FALSE(Feature(marked).mFlag) << "copied";
    Feature moved(std::move(marked));
    EXPECT_TRUE(moved.mFlag) << "moved along";
    target = std::move(moved);
    EXPECT_FALSE(target.mFlag) << "moved into another";
}

TEST(VisualFeaturesTest, TheFlagStaysInAssignmentsIsFalseInCopiesAndMovesAlong) {
    expectFlagToStay(Blobs(), Blobs());
    expectFlagToStay(ColorGMM(1, 1), ColorGMM(2, 2));
    expectFlagToStay(ColourHist2d(1, 1, 1), ColourHist2d(2, 2, 2));
}

}  // namespace
