#include <gtest/gtest.h>
#include <tarvos/vision/Regions.h>

using namespace tarvos::vision;

namespace {

TEST(RegionsTest, NoRegionsAndWrongMasks) {
    EXPECT_EQ(Regions(cv::Mat::zeros(9, 9, CV_8U), 0.0).largest(), nullptr);
    EXPECT_EQ(Regions(cv::Mat(), 0.0).largest(), nullptr);
    EXPECT_DEATH(Regions(cv::Mat(9, 9, CV_8UC3), 0.0), "the mask is not 8-bit");
    const Regions other(cv::Mat(9, 9, CV_8U, cv::Scalar(255)), 0.0), none(cv::Mat::zeros(9, 9, CV_8U), 0.0);
    for (const Regions* regions : {&other, &none})
        ASSERT_DEATH(regions->maskOf(Regions::BlobInfo(), {9, 9}), "not one of this object's");
}

}  // namespace
