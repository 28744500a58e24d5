#include <gtest/gtest.h>
#include <tarvos/vision/Regions.h>

using namespace tarvos::vision;
using tarvos::core::cvdata::VisContourSamplePts;

namespace {

TEST(RegionsTest, TheLargestIsTracedAlongItsEdge) {
    cv::Mat mask = cv::Mat::zeros(240, 320, CV_8U);
    mask(cv::Rect(10, 20, 30, 40)).setTo(255);
    mask(cv::Rect(200, 100, 51, 50)).setTo(255);
    mask(cv::Rect(210, 110, 9, 9)).setTo(0);
    const Regions regions(mask, 0.0, {1000, 2000});
    const Regions::BlobInfo& region = *regions.largest();
    EXPECT_EQ(region.mField2, 51 * 50) << "its hole included";
    EXPECT_EQ(boxOf(region), cv::Rect(1200, 2100, 51, 50)) << "from the corner on";
    EXPECT_EQ(region.mVector[0], 1225.5);
    EXPECT_EQ(cv::mean(regions.maskOf(region, {1300, 2200})(boxOf(region))), cv::Scalar(255));
    VisContourSamplePts outline;
    for (int i = 0; i < 2; ++i)
        regions.traceOutline(region, outline);
    ASSERT_EQ(outline.mPoints.size(), 25U) << "every eighth of 198 pixels, once";
    EXPECT_EQ(outline.mPoints[0].mVec4[1], 2100.0) << "it begins at the top";
    for (std::size_t i = 0; i < 25; ++i)
        EXPECT_EQ(outline.mEdges[i].mPointRefs[1], outline.mEdges[(i + 1) % 25].mPointRefs[0]) << "it is closed";
}

TEST(RegionsTest, NoRegionsAndWrongMasks) {
    EXPECT_EQ(Regions(cv::Mat::zeros(9, 9, CV_8U), 0.0).largest(), nullptr);
    EXPECT_EQ(Regions(cv::Mat(), 0.0).largest(), nullptr);
    EXPECT_DEATH(Regions(cv::Mat(9, 9, CV_8UC3), 0.0), "the mask is not 8-bit");
    const Regions other(cv::Mat(9, 9, CV_8U, cv::Scalar(255)), 0.0), none(cv::Mat::zeros(9, 9, CV_8U), 0.0);
    for (const Regions* regions : {&other, &none})
        EXPECT_DEATH(regions->maskOf(Regions::BlobInfo(), {9, 9}), "not one of this object's");
}

}  // namespace
