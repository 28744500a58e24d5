#include <gtest/gtest.h>
#include <tarvos/math/EigenMap.h>
#include <tarvos/vision/Histogram.h>

using namespace tarvos::vision;
using tarvos::core::cvdata::ColourHist2d;

namespace {

struct HistogramTest : testing::Test {
    HistogramTest() {
        cv::randu(pixels, 0, 256);
        addPixels(histogram, pixels);
    }
    cv::Mat pixels = cv::Mat(30, 41, CV_8UC3);
    ColourHist2d histogram{2, 2, 2}, zero{2, 2, 2};
};

TEST_F(HistogramTest, AddsToWhatIsThere) {
    addPixels(histogram, pixels);
    addPixels(histogram, cv::Mat());
    EXPECT_EQ(tarvos::math::eigenMap(histogram.data()).sum(), 2.0 * 41 * 30);
}

TEST_F(HistogramTest, NormalizesToASumOfOneAndLeavesZeros) {
    normalize(histogram);
    normalize(zero);
    EXPECT_NEAR(tarvos::math::eigenMap(histogram.data()).sum(), 1.0, 1e-12);
    EXPECT_EQ(tarvos::math::eigenMap(zero.data()).sum(), 0.0);
}

TEST_F(HistogramTest, TheDistanceDoesNotDependOnTheSums) {
    ColourHist2d part(2, 2, 2);
    addPixels(part, pixels.rowRange(0, 1));
    const double expected = bhattacharyyaDistance(histogram, part);
    EXPECT_GT(expected, 0.0);
    for (const double scale : {1e-200, 1e-7, 1e200}) {
        ColourHist2d scaled(part);
        for (double& entry : scaled.data())
            entry *= scale;
        EXPECT_NEAR(bhattacharyyaDistance(histogram, scaled), expected, 1e-9) << scale;
    }
    EXPECT_NEAR(bhattacharyyaDistance(part, part), 0.0, 1e-7);
    EXPECT_EQ(bhattacharyyaDistance(part, zero), 1.0);
    EXPECT_EQ(bhattacharyyaDistance(zero, zero), 1.0);
}

TEST_F(HistogramTest, AZeroHistogramProjectsToZero) {
    EXPECT_EQ(cv::countNonZero(backProject(zero, pixels)), 0);
    EXPECT_EQ(backProject(ColourHist2d(0, 2, 2), pixels).size(), pixels.size());
}

TEST_F(HistogramTest, AbortsOnWrongTypesSizesAndLimits) {
    EXPECT_DEATH(addPixels(histogram, cv::Mat(2, 2, CV_8UC1)), "the pixels are not CV_8UC3");
    EXPECT_DEATH(backProject(histogram, cv::Mat(2, 2, CV_32FC3)), "the pixels are not CV_8UC3");
    EXPECT_DEATH(addPixels(histogram, pixels, cv::Mat(2, 2, CV_8UC1)), "the mask is not CV_8UC1");
    EXPECT_DEATH(addPixels(histogram, pixels, pixels), "the mask is not CV_8UC1");
    EXPECT_DEATH(addPixels(histogram, pixels, {}, {256, 0, 256}), "a limit is not above 0");
    EXPECT_DEATH(bhattacharyyaDistance(histogram, ColourHist2d(2, 1, 4)), "differ in shape");
    ColourHist2d negative(histogram);
    negative.data()[0] = -0.5;
    EXPECT_DEATH(bhattacharyyaDistance(histogram, negative), "an entry is negative");
    histogram.data() = tarvos::math::Vector(3);
    EXPECT_DEATH(addPixels(histogram, pixels), "does not have the histogram's shape");
    EXPECT_DEATH(normalize(histogram), "does not have the histogram's shape");
}

}  // namespace
