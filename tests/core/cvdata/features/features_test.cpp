#include "core/cvdata/Image.h"
#include "core/cvdata/features/Blobs.h"
#include "core/cvdata/features/ColorGMM.h"
#include "core/cvdata/features/ColourHist2d.h"
#include "core/cvdata/features/VisContourSamplePts.h"
#include "support/Output.h"
#include "support/Poses.h"

#include <iomanip>
#include <iostream>
#include <new>
#include <stdexcept>

using namespace tarvos::core::cvdata;
using tarvos::math::Vector;
using testing::Each;
using testing::ElementsAre;

namespace {

TEST(CvDataTest, TagsTellTheKind) {
    EXPECT_EQ(ColourHist2d(1, 1, 1).type(), 0x40000016);
    EXPECT_EQ(Image().type(), 0x40000017);
    EXPECT_EQ(VisContourSamplePts().type(), 0x4000001C);
    EXPECT_EQ(Blobs().type(), 0x4000001D);
    EXPECT_EQ(ColorGMM(1, 1).type(), 0x4000001F);
}

TEST(CvDataTest, AssignmentThroughABaseMovesNoData) {
    Blobs source, target;
    target.addBlob();
    source.mFlag = true;
    CvData& root = target;
    root = source;
    EXPECT_FALSE(target.mFlag);
    EXPECT_DEATH(root = Image(), "this->mDataReprType == data.mDataReprType");
    ColorGMM marked(1, 1);
    marked.mFlag = true;
    static_cast<VisualFeatures&>(target) = marked;
    EXPECT_TRUE(target.mFlag);
    EXPECT_TRUE(VisualFeatures(target).mFlag);
    EXPECT_EQ(target.dimension(), 1U);
}

TEST(BlobsTest, NewRecordsAreZeroWhateverTheMemoryHeld) {
    alignas(Blobs::BlobInfo) unsigned char memory[sizeof(Blobs::BlobInfo)];
    std::fill(std::begin(memory), std::end(memory), static_cast<unsigned char>(0xA5));
    auto* blob = new (memory) Blobs::BlobInfo;
    EXPECT_THAT(blob->mValues, Each(0.0));
    EXPECT_THAT(blob->mBlock, Each(0));
    EXPECT_EQ(blob->mField1, 0);
    EXPECT_EQ(blob->mField2, 0);
    EXPECT_EQ(elementsOf(blob->mMatrix1), std::vector<double>(4));
    EXPECT_EQ(elementsOf(blob->mMatrix2), std::vector<double>(4));
    EXPECT_EQ(elementsOf(blob->mVector), std::vector<double>(2));
    blob->~BlobInfo();
}

TEST(ColorGmmTest, StopsAboveFourDimensionsAndThrowsOnTooManyComponents) {
    EXPECT_DEATH(ColorGMM(2, 5), "dim <= 4");
    EXPECT_THROW(ColorGMM(static_cast<std::size_t>(-1), 4), std::length_error);
}

TEST(ColorGmmTest, StopsOnANullSlot) {
    ColorGMM source(2, 2);
    source.mMixtures[0].reset();
    EXPECT_DEATH(ColorGMM(2, 2) = source, "a slot of the mixture is empty");
}

TEST(SkinModelTest, HasTheFittedConstants) {
    const ColorGMM skin = ColorGMM::skin();
    ASSERT_EQ(skin.dimension(), 2U);
    const GM &first = *skin.mMixtures[0], &second = *skin.mMixtures[1];
    EXPECT_THAT(elementsOf(first.mCovariance), ElementsAre(3.0789F, -0.2718F, -0.2718F, 91.2812F));
    EXPECT_THAT(elementsOf(first.mMean), ElementsAre(111.3253F, 114.8166F));
    EXPECT_EQ(first.mWeight, 0.5027F);
    EXPECT_EQ(first.mDeterminant, 281.14F);
    EXPECT_THAT(elementsOf(second.mCovariance), ElementsAre(136.4821F, -1.7907F, -1.7907F, 2.2867F));
    EXPECT_THAT(elementsOf(second.mMean), ElementsAre(116.5767F, 111.7613F));
    EXPECT_EQ(second.mWeight, 0.4973F);
    EXPECT_EQ(second.mDeterminant, 309.34F);
    EXPECT_NEAR(first.mCovarianceInverse(0, 0), 0.324877, 1e-6);
    EXPECT_NEAR(first.mCovarianceInverse(0, 1), 0.000967, 1e-6);
}

TEST(SkinModelTest, ReplacesTheComponentsAndIsPrinted) {
    ColorGMM model(3, 3);
    const auto* slots = model.mMixtures.data();
    const std::string printed = captureStdout([&] { model.initSkinDistribution(); });
    ASSERT_EQ(model.dimension(), 2U);
    EXPECT_EQ(model.mMixtures.data(), slots);
    std::ostringstream expected;
    expected << "Values of mixture 1 set to:\nCovariance:\n"
             << model.mMixtures[0]->mCovariance << "\nCovariance Inverse:\n"
             << model.mMixtures[0]->mCovarianceInverse << "\nMean:\n"
             << model.mMixtures[0]->mMean << "\nWeight:\n0.5027\nDeterminant:\n281.14\n"
             << "***********************************\nValues of mixture 2 set to:\nCovariance:\n"
             << model.mMixtures[1]->mCovariance << "\nCovariance Inverse:\n"
             << model.mMixtures[1]->mCovarianceInverse << "\nMean:\n"
             << model.mMixtures[1]->mMean << "\nWeight:\n0.4973\nDeterminant:\n309.34\n"
             << "***********************************\n";
    EXPECT_EQ(printed, expected.str());
}

TEST(ColourHist2dTest, HasAnEntryForEachCombinationOfBins) {
    EXPECT_EQ(ColourHist2d(8, 8, 4).getBinsTotal(), 256U);
    EXPECT_EQ(ColourHist2d(255, 255, 255).data().dimension(), 16581375U);
}

TEST(ColourHist2dTest, StopsOnDataOfAnotherLength) {
    EXPECT_DEATH(ColourHist2d(2, 2, 2).setData(Vector(2)), "Input.dimension\\(\\) == ");
}

TEST(ColourHist2dTest, HasNoDataOnceMovedFrom) {
    ColourHist2d source(4, 3, 2);
    const ColourHist2d moved(std::move(source));
    EXPECT_DEATH(source.data(), "mColourHistData != __null");
    EXPECT_DEATH(ColourHist2d(1, 1, 1) = source, "mColourHistData != __null");
    source.setBins(1, 2, 3);
    EXPECT_EQ(source.data().dimension(), 6U);
}

TEST(VisContourSamplePtsTest, StopsOnAssignment) {
    VisContourSamplePts contour;
    EXPECT_DEATH(contour = VisContourSamplePts(), "operator = not implemented");
}

}  // namespace
