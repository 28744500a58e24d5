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
    EXPECT_CONTRACT(root = Image(), "CvData::operator=", "this->mDataReprType == data.mDataReprType");
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

TEST(BlobsTest, GrowsByOneRecordAndIsCleared) {
    Blobs blobs;
    EXPECT_EQ(blobs.dimension(), 0U);
    blobs.addBlob();
    blobs.addBlob();
    EXPECT_EQ(blobs.dimension(), 2U);
    blobs.clear();
    EXPECT_EQ(blobs.dimension(), 0U);
}

TEST(ColorGmmTest, StartsWithFreshComponents) {
    EXPECT_EQ(ColorGMM(0, 3).mEpsilon, 4.999999987376214e-7);
    const ColorGMM model(3, 4);
    ASSERT_EQ(model.dimension(), 3U);
    EXPECT_EQ(model.mMixtures[2]->mDim, 4U);
    EXPECT_EQ(elementsOf(model.mMixtures[2]->mCovariance), std::vector<double>(16));
    EXPECT_EQ(elementsOf(model.mMixtures[2]->mMean), std::vector<double>(4));
    EXPECT_EQ(model.mMixtures[2]->mWeight, 1.0F);
    EXPECT_EQ(model.mMixtures[2]->mDeterminant, 0.0F);
}

TEST(ColorGmmTest, StopsAboveFourDimensionsAndThrowsOnTooManyComponents) {
    EXPECT_CONTRACT(ColorGMM(2, 5), "ColorGMM::ColorGMM", "dim <= 4");
    EXPECT_THROW(ColorGMM(static_cast<std::size_t>(-1), 4), std::length_error);
}

TEST(ColorGmmTest, AssignmentOverwritesNoComponentThatAUserHolds) {
    ColorGMM target(3, 4);
    const auto kept = target.mMixtures[0];
    target = ColorGMM(2, 2);
    EXPECT_EQ(kept->mDim, 4U);
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

TEST(SkinModelTest, IsPrintedWithTheStreamsPrecisionButNotItsWidth) {
    std::cout << std::setprecision(3) << std::setw(99);
    const std::string printed = captureStdout([] { ColorGMM(1, 1).initSkinDistribution(); });
    EXPECT_EQ(std::cout.width(), 99);
    std::cout << std::setw(0) << std::setprecision(6);
    EXPECT_THAT(printed, testing::StartsWith("Values of mixture 1 set to:\n"));
    EXPECT_THAT(printed, testing::HasSubstr("\nWeight:\n0.503\nDeterminant:\n281\n***"));
}

void expectShape(const ColourHist2d& histogram, std::array<unsigned char, 3> bins) {
    std::array<unsigned char, 3> actual{};
    histogram.getBins(&actual[0], nullptr, &actual[2]);
    histogram.getBins(nullptr, &actual[1], nullptr);
    EXPECT_EQ(actual, bins);
    EXPECT_EQ(histogram.getBinsTotal(), static_cast<unsigned int>(bins[0] * bins[1] * bins[2]));
    EXPECT_EQ(histogram.data().dimension(), histogram.getBinsTotal());
}

TEST(ColourHist2dTest, ShapeAndStorageAgree) {
    expectShape(ColourHist2d(8, 8, 4), {8, 8, 4});
    expectShape(ColourHist2d(255, 255, 255), {255, 255, 255});
    expectShape(ColourHist2d(0, 5, 5), {0, 5, 5});
}

TEST(ColourHist2dTest, AnotherShapeDiscardsTheEntriesAndTheSameShapeKeepsThem) {
    ColourHist2d histogram(2, 1, 2);
    histogram.setData(Vector::of(1, 2, 3, 4));
    histogram.setBins(2, 1, 2);
    EXPECT_THAT(elementsOf(histogram.data()), ElementsAre(1, 2, 3, 4));
    histogram.setBins(1, 2, 2);
    expectShape(histogram, {1, 2, 2});
    EXPECT_EQ(elementsOf(histogram.data()), std::vector<double>(4));
}

TEST(ColourHist2dTest, IsCleared) {
    ColourHist2d histogram(2, 2, 2);
    histogram.data().fill(3.0);
    histogram.clear();
    EXPECT_EQ(elementsOf(histogram.data()), std::vector<double>(8));
}

TEST(ColourHist2dTest, StopsOnDataOfAnotherLength) {
    EXPECT_CONTRACT(ColourHist2d(2, 2, 2).setData(Vector(2)), "ColourHist2d::setData",
                    "Input.dimension() == static_cast<std::size_t>(mBins1 * mBins2 * mBins3)");
}

TEST(ColourHist2dTest, HasNoDataOnceMovedFrom) {
    ColourHist2d source(4, 3, 2);
    const ColourHist2d moved(std::move(source));
    EXPECT_CONTRACT(source.data(), "ColourHist2d::data", "mColourHistData != __null");
    EXPECT_DEATH(ColourHist2d(1, 1, 1) = source, "mColourHistData != __null");
    source.setBins(0, 0, 0);
    expectShape(source, {0, 0, 0});
}

TEST(VisContourSamplePtsTest, MovesWithItsEdgesPointingToItsPoints) {
    std::vector<VisContourSamplePts> contours(1);
    contours[0].mPoints.resize(3);
    contours[0].mEdges.resize(2);
    contours[0].mEdges[1].mPointRefs = {&contours[0].mPoints[2]};
    contours[0].mField = 5;
    contours[0].mFlag = true;
    contours.resize(10);
    EXPECT_EQ(contours[0].mEdges[1].mPointRefs[0], &contours[0].mPoints[2]);
    EXPECT_EQ(contours[0].mField, 5);
    EXPECT_TRUE(contours[0].mFlag);
    EXPECT_FALSE(std::is_copy_constructible_v<VisContourSamplePts>);
}

TEST(VisContourSamplePtsTest, ClearRemovesTheEdgesAlone) {
    VisContourSamplePts contour;
    contour.mPoints.resize(3);
    contour.mEdges.resize(2);
    EXPECT_EQ(contour.mField + contour.mEdges[0].mField + contour.mPoints[0].mField, 0);
    contour.clear();
    EXPECT_EQ(contour.mEdges.size(), 0U);
    EXPECT_EQ(contour.mPoints.size(), 3U);
}

TEST(VisContourSamplePtsTest, StopsOnAssignment) {
    VisContourSamplePts contour;
    EXPECT_CONTRACT(contour = VisContourSamplePts(),
                    "VisContourSamplePts::operator=", "0 && \"operator = not implemented\"");
}

}  // namespace
