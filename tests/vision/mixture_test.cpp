#include <Eigen/LU>
#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>
#include <tarvos/math/EigenMap.h>
#include <tarvos/vision/Mixture.h>

#include <cmath>
#include <limits>
#include <stdexcept>

using namespace tarvos::vision;
using tarvos::core::cvdata::ColorGMM;
using tarvos::core::cvdata::GM;
using tarvos::math::eigenMap;

namespace {

double squaredDistance(const GM& component, const Eigen::VectorXd& value) {
    const Eigen::VectorXd difference = value - eigenMap(component.mMean);
    return difference.dot(eigenMap(component.mCovariance).inverse() * difference);
}

TEST(MixtureTest, SkinIsWithinThreeDeviationsOfAComponent) {
    cv::Mat pixels(120, 100, CV_8UC3), hsv;
    cv::theRNG().state = 3;
    cv::randu(pixels, cv::Scalar(60, 90, 120), cv::Scalar(160, 190, 240));  // skin and others
    cv::cvtColor(pixels, hsv, cv::COLOR_RGB2HSV);
    const ColorGMM skin = ColorGMM::skin();
    for (const double deviations : {3.0, 1.5}) {
        const cv::Mat mask = skinMask(pixels, deviations);
        EXPECT_GT(cv::countNonZero(mask), 30) << "the test is about something";
        for (int i = 0; i < 120 * 100; ++i) {
            const auto& colour = hsv.at<cv::Vec3b>(i / 100, i % 100);
            const Eigen::Vector2d value(colour[0], colour[1]);
            const bool isSkin = squaredDistance(*skin.mMixtures[0], value) <= deviations * deviations ||
                                squaredDistance(*skin.mMixtures[1], value) <= deviations * deviations;
            ASSERT_EQ(mask.at<unsigned char>(i / 100, i % 100), isSkin ? 255 : 0) << value.transpose();
        }
    }
    EXPECT_TRUE(skinMask(cv::Mat()).empty());
}

/// Samples around two colours, three quarters of them around the first.
cv::Mat samplesOf(int count, int type) {
    cv::Mat samples(count, 3, CV_64F);
    cv::RNG random(5);
    for (int i = 0; i < count; ++i)
        for (int j = 0; j < 3; ++j)
            samples.at<double>(i, j) = (i % 4 == 0 ? 200 : 50) + 10 * j + random.gaussian(3.0 + j);
    samples.convertTo(samples, type);
    return samples;
}

TEST(MixtureTest, LearnsAMixtureWithAllFields) {
    const std::uint64_t state = cv::theRNG().state;
    const ColorGMM mixture = fitMixture(samplesOf(4000, CV_64F), 2);
    EXPECT_EQ(cv::theRNG().state, state) << "the caller's random numbers";
    const GM& rare = *mixture.mMixtures[mixture.mMixtures[0]->mWeight < 0.5F ? 0 : 1];
    EXPECT_NEAR(rare.mWeight, 0.25, 0.01);
    for (unsigned int i = 0; i < 3; ++i) {
        EXPECT_NEAR(rare.mMean[i], 200 + 10 * i, 0.5);
        EXPECT_NEAR(rare.mCovariance(i, i), (3.0 + i) * (3.0 + i), 3.0);
    }
    EXPECT_NE(rare.mCovariance(0, 1), 0.0) << "full covariances";
    EXPECT_TRUE((eigenMap(rare.mCovariance) * eigenMap(rare.mCovarianceInverse)).isIdentity(1e-9));
    EXPECT_NEAR(rare.mDeterminant / eigenMap(rare.mCovariance).determinant(), 1.0, 1e-6);

    cv::theRNG().state = 99;
    const ColorGMM again = fitMixture(samplesOf(4000, CV_64F), 2);
    EXPECT_EQ(again.mMixtures[0]->mMean[0], mixture.mMixtures[0]->mMean[0]) << "the same samples, the same mixture";
}

TEST(MixtureTest, SamplesWithoutAVolumeAreAnError) {
    cv::Mat line = samplesOf(200, CV_64F);
    line.col(0).copyTo(line.col(1));
    cv::Mat infinite = samplesOf(10, CV_32F);
    infinite.at<float>(4, 1) = std::numeric_limits<float>::infinity();
    EXPECT_THROW(fitMixture(cv::Mat(50, 3, CV_8U, cv::Scalar(9)), 2), std::runtime_error) << "all alike";
    EXPECT_THROW(fitMixture(line, 2), std::runtime_error) << "in a plane";
    EXPECT_THROW(fitMixture(samplesOf(2, CV_8U), 3), std::runtime_error) << "fewer than components";
    EXPECT_THROW(fitMixture(infinite, 1), std::runtime_error);
    EXPECT_THROW(fitMixture(samplesOf(200, CV_64F) * 1e12, 1), std::runtime_error) << "a determinant beyond a float";
}

TEST(MixtureTest, AbortsOnWhatItCannotEvaluate) {
    const cv::Mat pixels(2, 2, CV_8UC3, cv::Scalar::all(0));
    const ColorGMM skin = ColorGMM::skin();
    EXPECT_EQ(cv::countNonZero(density(ColorGMM(0, 3), pixels)), 0) << "no components";
    EXPECT_DEATH(density(skin, cv::Mat(2, 2, CV_8UC1)), "too few channels");
    EXPECT_DEATH(density(ColorGMM(1, 2), pixels), "no determinant above 0");
    ColorGMM mixed = skin;
    mixed.mMixtures[1].reset(new GM(3));
    EXPECT_DEATH(density(mixed, pixels), "differs in dimension");
    mixed.mMixtures[0].reset();
    EXPECT_DEATH(density(mixed, pixels), "a component is empty");
    EXPECT_DEATH(skinMask(cv::Mat(2, 2, CV_8UC1)), "not CV_8UC3");
    EXPECT_DEATH(skinMask(pixels, -1.0), "negative or not a number");
    EXPECT_DEATH(skinMask(pixels, std::nan("")), "negative or not a number");
    EXPECT_DEATH(fitMixture(cv::Mat(9, 5, CV_8U), 1), "a row of 1 to 4 values");
    EXPECT_DEATH(fitMixture(pixels, 1), "a row of 1 to 4 values");
    EXPECT_DEATH(fitMixture(cv::Mat(9, 2, CV_8U), 0), "at least 1 component");
}

}  // namespace
