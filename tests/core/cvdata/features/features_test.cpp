#include "support/Output.h"
#include "support/Poses.h"

#include <tarvos/core/cvdata/Image.h>
#include <tarvos/core/cvdata/features/Blobs.h>
#include <tarvos/core/cvdata/features/ColorGMM.h>
#include <tarvos/core/cvdata/features/ColourHist2d.h>

#include <iostream>
#include <stdexcept>

using namespace tarvos::core::cvdata;
using tarvos::math::Vector;

namespace {

TEST(CvDataTest, AssignmentThroughABaseMovesNoData) {
    Blobs target;
    target.addBlob();
    ColorGMM flagged(1, 1);
    flagged.mFlag = true;
    static_cast<VisualFeatures&>(target) = flagged;
    EXPECT_TRUE(target.mFlag);
    static_cast<CvData&>(target) = Blobs();
    EXPECT_TRUE(target.mFlag) << "of the root nothing is copied";
    EXPECT_EQ(target.dimension(), 1U);
    EXPECT_DEATH(static_cast<CvData&>(target) = Image(), "this->mDataReprType == data.mDataReprType");
}

TEST(ColorGmmTest, AComponentThatAUserKeepsIsNeverOverwritten) {
    ColorGMM model(1, 2);
    EXPECT_EQ(model.mEpsilon, static_cast<double>(5e-7F));
    const auto kept = model.mMixtures[0];
    kept->mWeight = 7.0F;
    model = ColorGMM(2, 2);
    EXPECT_EQ(kept->mWeight, 7.0F) << "after an assignment";
    const auto next = model.mMixtures[0];
    captureStdout([&] { model.initSkinDistribution(); });
    EXPECT_EQ(next->mWeight, 1.0F) << "after initSkinDistribution";
}

TEST(ColorGmmTest, AbortsAboveFourDimensionsAndOnANullSlot) {
    EXPECT_DEATH(ColorGMM(2, 5), "dim <= 4");
    EXPECT_THROW(ColorGMM(static_cast<std::size_t>(-1), 4), std::length_error);
    ColorGMM source(2, 2);
    source.mMixtures[0].reset();
    EXPECT_DEATH(ColorGMM(2, 2) = source, "ColorGMM::ColorGMM[^\n]*a slot of the mixture is empty");
}

TEST(SkinModelTest, HasTheFittedConstantsAndIsPrintedInTheStreamsPrecision) {
    ColorGMM model(3, 3);
    const auto precision = std::cout.precision(7);
    const auto* slots = model.mMixtures.data();
    const std::string printed = captureStdout([&] { model.initSkinDistribution(); });
    std::cout.precision(precision);
    EXPECT_EQ(printed, R"(Values of mixture 1 set to:
Covariance:
[ 3.0789, -0.2718]
[-0.2718, 91.2812]
Covariance Inverse:
[   0.3248767, 0.0009673569]
[0.0009673569,   0.01095804]
Mean:
[111.3253, 114.8166]
Weight:
0.5027
Determinant:
281.14
***********************************
Values of mixture 2 set to:
Covariance:
[136.4821,  -1.7907]
[ -1.7907,   2.2867]
Covariance Inverse:
[0.007403031, 0.005797265]
[0.005797265,   0.4418512]
Mean:
[116.5767, 111.7613]
Weight:
0.4973
Determinant:
309.34
***********************************
)");
    EXPECT_EQ(model.mMixtures.data(), slots);
}

TEST(ColourHist2dTest, SetBinsOfTheSameShapeKeepsTheEntriesAndAnotherClearsThem) {
    ColourHist2d histogram(8, 8, 4);
    histogram.data().fill(1.0);
    histogram.setBins(8, 8, 4);
    EXPECT_EQ(histogram.data()[255], 1.0);
    histogram.setBins(std::uint8_t{8}, 8U, 5L);
    EXPECT_THAT(elementsOf(histogram.data()), testing::AllOf(testing::SizeIs(320), testing::Each(0.0)));
}

TEST(ColourHist2dTest, GetBinsSkipsNullPointers) {
    const ColourHist2d histogram(8, 7, 4);
    unsigned char bins = 0;
    histogram.getBins(nullptr, &bins, nullptr);
    EXPECT_EQ(bins, 7);
    histogram.getBins(&bins, nullptr, nullptr);
    EXPECT_EQ(bins, 8);
    histogram.getBins(nullptr, nullptr, &bins);
    EXPECT_EQ(bins, 4);
}

TEST(ColourHist2dTest, AbortsOnANumberOfBinsThatDoesNotFit) {
    const char* const message = "a channel has 0 to 255 bins";
    EXPECT_DEATH(ColourHist2d(256, 4, 4), message);
    EXPECT_DEATH(ColourHist2d(4, -1, 4), message);
    ColourHist2d histogram(255, 0, 1);
    EXPECT_DEATH(histogram.setBins(4, 4, std::size_t{1} << 31), message);
}

TEST(ColourHist2dTest, AbortsOnDataOfAnotherLengthAndHasNoneOnceMovedFrom) {
    ColourHist2d source(255, 16, 4);
    EXPECT_EQ(source.getBinsTotal(), 16320U);
    EXPECT_DEATH(source.setData(Vector(2)), "Input.dimension\\(\\) == ");
    const ColourHist2d moved(std::move(source));
    EXPECT_DEATH(source.data(), "mColourHistData != __null");
    EXPECT_DEATH(ColourHist2d(1, 1, 1) = source, "mColourHistData != __null");
}

}  // namespace
