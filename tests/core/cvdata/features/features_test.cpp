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
    EXPECT_EQ(blob->mValues, (std::array<double, 5>{}));
    EXPECT_EQ(blob->mBlock, (std::array<std::int32_t, 4>{}));
    EXPECT_EQ(std::pair(blob->mField1, blob->mField2), std::pair(0, 0));
    EXPECT_EQ(elementsOf(blob->mMatrix1), std::vector<double>(4));
    EXPECT_EQ(elementsOf(blob->mMatrix2), std::vector<double>(4));
    EXPECT_EQ(elementsOf(blob->mVector), std::vector<double>(2));
    blob->~BlobInfo();
    Blobs blobs;
    blobs.addBlob();
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
    EXPECT_THROW(ColorGMM(static_cast<std::size_t>(-1), 4), std::length_error);
    EXPECT_CONTRACT(ColorGMM(2, 5), "ColorGMM::ColorGMM", "dim <= 4");
}

TEST(ColorGmmTest, AssignmentOverwritesNoComponentThatAUserHolds) {
    ColorGMM source(2, 2);
    ColorGMM target(3, 4);
    const auto kept = target.mMixtures[0];
    target = source;
    EXPECT_EQ(kept->mDim, 4U);
    source.mMixtures[0].reset();
    EXPECT_DEATH(target = source, "a slot of the mixture is empty");
}

TEST(ColorGmmTest, SkinModelIsLoadedAndPrintedInTheStreamsPrecisionAndNoOtherFormatOfIt) {
    const std::vector<double> covariances[] = {{3.0789F, -0.2718F, -0.2718F, 91.2812F},
                                               {136.4821F, -1.7907F, -1.7907F, 2.2867F}};
    const std::vector<double> means[] = {{111.3253F, 114.8166F}, {116.5767F, 111.7613F}};
    const std::string scalars[] = {"\nWeight:\n0.503\nDeterminant:\n281\n", "\nWeight:\n0.497\nDeterminant:\n309\n"};
    ColorGMM model(3, 3);
    const std::ios_base::fmtflags flags = std::cout.flags();
    std::cout << std::hex << std::showbase << std::setprecision(3) << std::setw(99);
    const std::string printed = outputOf([&] { model.initSkinDistribution(); });
    EXPECT_EQ(std::cout.width(), 99);
    std::cout << std::setw(0) << std::setprecision(6);
    std::cout.flags(flags);
    ASSERT_EQ(model.dimension(), 2U);
    std::ostringstream expected;
    expected << std::setprecision(3);
    for (std::size_t i = 0; i < 2; ++i) {
        const auto& component = *model.mMixtures[i];
        EXPECT_EQ(component.mDim, 2U);
        EXPECT_EQ(elementsOf(component.mCovariance), covariances[i]);
        EXPECT_EQ(elementsOf(component.mMean), means[i]);
        expected << "Values of mixture " << i + 1 << " set to:\nCovariance:\n"
                 << component.mCovariance << "\nCovariance Inverse:\n"
                 << component.mCovarianceInverse << "\nMean:\n"
                 << component.mMean << scalars[i] << std::string(35, '*') << '\n';
    }
    EXPECT_EQ(printed, expected.str());
    EXPECT_NEAR(model.mMixtures[0]->mCovarianceInverse(0, 0), 0.324877, 1e-6);
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
    expectShape(ColourHist2d(255, 255, 255), {255, 255, 255});
    ColourHist2d histogram(2, 1, 2);
    histogram.setData(Vector::of(1, 2, 3, 4));
    histogram.setBins(2, 1, 2);
    EXPECT_THAT(elementsOf(histogram.data()), testing::ElementsAre(1, 2, 3, 4));
    histogram.setBins(1, 2, 2);
    expectShape(histogram, {1, 2, 2});
    EXPECT_EQ(elementsOf(histogram.data()), std::vector<double>(4));
    histogram.data().fill(3.0);
    histogram.clear();
    EXPECT_EQ(elementsOf(histogram.data()), std::vector<double>(4));
    EXPECT_CONTRACT(histogram.setData(Vector(2)), "ColourHist2d::setData",
                    "Input.dimension() == static_cast<std::size_t>(mBins1 * mBins2 * mBins3)");
}

TEST(ColourHist2dTest, SaysThatItsVectorHasMoved) {
    ColourHist2d source(4, 3, 2);
    ColourHist2d moved(std::move(source));
    expectShape(moved, {4, 3, 2});
    EXPECT_EQ(source.getBinsTotal(), 0U);
    EXPECT_CONTRACT(source.data(), "ColourHist2d::data", "mColourHistData != __null");
    EXPECT_DEATH(moved = source, "mColourHistData != __null");
    source.setBins(0, 0, 0);
    expectShape(source, {0, 0, 0});
    ColourHist2d gone(std::move(source));
    source = moved;
    expectShape(source, {4, 3, 2});
}

TEST(VisContourSamplePtsTest, IsMovedWithItsEdgesPointingToItsPointsButNeverCopied) {
    static_assert(!std::is_copy_constructible_v<VisContourSamplePts> &&
                  std::is_nothrow_move_constructible_v<VisContourSamplePts>);
    std::vector<VisContourSamplePts> contours(1);
    VisContourSamplePts& contour = contours[0];
    EXPECT_EQ(contour.mField, 0);
    contour.mPoints.resize(3);
    contour.mEdges.resize(2);
    EXPECT_EQ(contour.mEdges[0].mField + contour.mPoints[0].mField, 0);
    contour.mEdges[1].mPointRefs = {&contour.mPoints[2]};
    contour.mField = 5;
    contour.mFlag = true;
    contours.resize(10);
    EXPECT_EQ(contours[0].mEdges[1].mPointRefs[0], &contours[0].mPoints[2]);
    EXPECT_EQ(contours[0].mField, 5);
    EXPECT_TRUE(contours[0].mFlag);
    contours[0].clear();
    EXPECT_EQ(contours[0].mEdges.size(), 0U);
    EXPECT_EQ(contours[0].mPoints.size(), 3U);
    EXPECT_CONTRACT(contours[0] = contours[1], "VisContourSamplePts::operator=", "0 && \"operator = not implemented\"");
    EXPECT_DEATH(contours[0] = VisContourSamplePts(), "operator = not implemented");
}

}  // namespace
