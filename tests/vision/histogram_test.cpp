#include <gtest/gtest.h>
#include <tarvos/vision/Histogram.h>

using namespace tarvos::vision;
using tarvos::core::cvdata::ColourHist2d;

namespace {

TEST(HistogramTest, AbortsOnWrongTypesSizesAndLimits) {
    const cv::Mat pixels(30, 41, CV_8UC3, cv::Scalar::all(0));
    ColourHist2d histogram(2, 2, 2);
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
}

}  // namespace
