#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/math/EigenMap.h>
#include <tarvos/vision/Histogram.h>

#include <cmath>

using namespace tarvos::vision;
using tarvos::core::cvdata::ColourHist2d;

namespace {

/// Random pixels that are a part of a larger matrix, and a mask of some of them.
struct HistogramTest : testing::Test {
    HistogramTest() {
        cv::theRNG().state = 7;
        cv::Mat whole(60, 80, CV_8UC3), mask(60, 80, CV_8UC1);
        cv::randu(whole, 0, 256);
        cv::randu(mask, 0, 2);
        pixels = whole(cv::Rect(3, 5, 41, 30));
        marked = mask(cv::Rect(7, 9, 41, 30));
    }
    static ColourHist2d filled(int bins1, int bins2, int bins3) {
        ColourHist2d histogram(bins1, bins2, bins3);
        for (unsigned int i = 0; i < histogram.getBinsTotal(); ++i)
            histogram.data()[i] = (i * 7919) % 100;
        return histogram;
    }

    cv::Mat pixels, marked;
};

/// OpenCV's view of the shape and of the limits.
struct Peer {
    Peer(int bins1, int bins2, int bins3, const ChannelLimits& limits) : sizes{bins1, bins2, bins3} {
        for (int i = 0; i < 3; ++i)
            ends[i][1] = static_cast<float>(limits[static_cast<std::size_t>(i)]);
    }
    const int sizes[3];
    const int channels[3] = {0, 1, 2};
    float ends[3][2] = {};
    const float* ranges[3] = {ends[0], ends[1], ends[2]};
};

TEST_F(HistogramTest, CountsAndProjectsAsOpencvDoes) {
    for (const ChannelLimits& limits : {BGR_LIMITS, HSV_LIMITS, ChannelLimits{256, 128, 64}}) {
        for (const cv::Mat& mask : {cv::Mat(), marked}) {
            Peer peer(limits[0] / 4, 16, 8, limits);
            ColourHist2d histogram(peer.sizes[0], 16, 8);
            addPixels(histogram, pixels, mask, limits);
            cv::Mat counted;
            cv::calcHist(&pixels, 1, peer.channels, mask, counted, 3, peer.sizes, peer.ranges);
            for (unsigned int i = 0; i < histogram.getBinsTotal(); ++i)
                ASSERT_EQ(histogram.data()[i], counted.ptr<float>()[i]) << "entry " << i << ", limit " << limits[1];

            double largest = 0.0;
            cv::minMaxIdx(counted, nullptr, &largest);
            cv::Mat projected;
            cv::calcBackProject(&pixels, 1, peer.channels, counted, projected, peer.ranges, 255.0 / largest);
            EXPECT_LE(cv::norm(backProject(histogram, pixels, limits), projected, cv::NORM_INF), 1.0) << "rounding";
        }
    }
}

TEST_F(HistogramTest, ABinIsTheValueTimesTheBinsByTheLimitInWholeNumbers) {
    for (int bins = 1; bins <= 255; bins += 2)
        for (int value = 0; value < 180; ++value) {
            ColourHist2d histogram(bins, 1, 1);
            addPixels(histogram, cv::Mat(1, 1, CV_8UC3, cv::Scalar(value, 0, 0)), {}, HSV_LIMITS);
            ASSERT_EQ(histogram.data()[static_cast<unsigned int>(value * bins / 180)], 1.0) << value << " of " << bins;
        }
}

TEST_F(HistogramTest, AddsToWhatIsThere) {
    ColourHist2d histogram(1, 1, 1);
    addPixels(histogram, pixels);
    addPixels(histogram, pixels);
    EXPECT_EQ(histogram.data()[0], 2.0 * 41 * 30);
    addPixels(histogram, cv::Mat());
    EXPECT_EQ(histogram.data()[0], 2.0 * 41 * 30);
}

TEST_F(HistogramTest, NormalizesToASumOfOneAndLeavesZeros) {
    ColourHist2d histogram = filled(3, 4, 5), zero(3, 4, 5);
    normalize(histogram);
    normalize(zero);
    EXPECT_NEAR(tarvos::math::eigenMap(histogram.data()).sum(), 1.0, 1e-12);
    EXPECT_EQ(tarvos::math::eigenMap(zero.data()).sum(), 0.0);
}

TEST_F(HistogramTest, TheDistanceIsOpencvsWhateverTheSums) {
    ColourHist2d a = filled(8, 8, 8), b(8, 8, 8), zero(8, 8, 8);
    addPixels(b, pixels);
    const cv::Mat first(512, 1, CV_64F, a.data().data()), second(512, 1, CV_64F, b.data().data());
    cv::Mat floats[2];
    first.convertTo(floats[0], CV_32F);
    second.convertTo(floats[1], CV_32F);
    const double expected = cv::compareHist(floats[0], floats[1], cv::HISTCMP_BHATTACHARYYA);
    for (const double scale : {1.0, 1e-150, 1e150}) {
        for (double& entry : b.data())
            entry *= scale;
        EXPECT_NEAR(bhattacharyyaDistance(a, b), expected, 1e-6) << scale;
        for (double& entry : b.data())
            entry /= scale;
    }
    EXPECT_NEAR(bhattacharyyaDistance(a, a), 0.0, 1e-7);
    EXPECT_EQ(bhattacharyyaDistance(a, zero), 1.0);
    EXPECT_EQ(bhattacharyyaDistance(zero, zero), 1.0);
}

TEST_F(HistogramTest, AZeroHistogramProjectsToZero) {
    EXPECT_EQ(cv::countNonZero(backProject(ColourHist2d(2, 2, 2), pixels)), 0);
    EXPECT_EQ(backProject(ColourHist2d(0, 2, 2), pixels).size(), pixels.size());
}

TEST_F(HistogramTest, StopsOnWrongTypesSizesAndLimits) {
    ColourHist2d histogram(2, 2, 2);
    EXPECT_DEATH(addPixels(histogram, cv::Mat(2, 2, CV_8UC1)), "the pixels are not CV_8UC3");
    EXPECT_DEATH(backProject(histogram, cv::Mat(2, 2, CV_32FC3)), "the pixels are not CV_8UC3");
    EXPECT_DEATH(addPixels(histogram, pixels, cv::Mat(2, 2, CV_8UC1)), "the mask is not CV_8UC1");
    EXPECT_DEATH(addPixels(histogram, pixels, pixels), "the mask is not CV_8UC1");
    EXPECT_DEATH(addPixels(histogram, pixels, {}, {256, 0, 256}), "a limit is not above 0");
    EXPECT_DEATH(bhattacharyyaDistance(histogram, ColourHist2d(2, 1, 4)), "differ in shape");
    histogram.data().fill(1.0);
    ColourHist2d negative(2, 2, 2);
    negative.data().fill(1.0);
    negative.data()[0] = -0.5;
    EXPECT_DEATH(bhattacharyyaDistance(histogram, negative), "an entry is negative");
    histogram.data() = tarvos::math::Vector(3);
    EXPECT_DEATH(addPixels(histogram, pixels), "does not have the histogram's shape");
}

}  // namespace
