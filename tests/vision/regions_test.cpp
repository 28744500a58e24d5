#include <gtest/gtest.h>
#include <opencv2/imgproc.hpp>
#include <tarvos/vision/Regions.h>

#include <map>

using namespace tarvos::vision;
using tarvos::core::cvdata::VisContourSamplePts;

namespace {

TEST(RegionsTest, AreWhatOpencvsComponentsAreWithoutHoles) {
    cv::Mat mask = cv::Mat::zeros(100, 120, CV_8U);
    cv::RNG random(11);
    for (int i = 0; i < 40; ++i)
        cv::circle(mask, {random.uniform(0, 120), random.uniform(0, 100)}, random.uniform(1, 8), 1 + i, cv::FILLED);
    const Regions regions(mask, 30, {1000, 0});
    cv::Mat labels, statistics, centroids;
    cv::Mat background = mask == 0, holes;
    cv::copyMakeBorder(background, holes, 1, 1, 1, 1, cv::BORDER_CONSTANT, 255);
    cv::floodFill(holes, {0, 0}, 0);  // which leaves the holes
    const int count =
        cv::connectedComponentsWithStats((mask != 0) | holes(cv::Rect(1, 1, 120, 100)), labels, statistics, centroids);
    std::map<int, int> areas;  // by the left edge and the top
    for (int label = 1; label < count; ++label)
        if (statistics.at<int>(label, cv::CC_STAT_AREA) >= 30)
            areas[statistics.at<int>(label, cv::CC_STAT_LEFT) * 1000 + statistics.at<int>(label, cv::CC_STAT_TOP)] =
                statistics.at<int>(label, cv::CC_STAT_AREA);
    ASSERT_EQ(regions.blobs().dimension(), areas.size());
    for (const Regions::BlobInfo& region : regions.blobs().mBlobs) {
        const cv::Rect box = boxOf(region);
        EXPECT_EQ(region.mField2, areas[(box.x - 1000) * 1000 + box.y]) << box;
        EXPECT_EQ(region.mVector[0], box.x + box.width / 2.0);
        EXPECT_EQ(region.mVector[1], box.y + box.height / 2.0);
        EXPECT_EQ(cv::countNonZero(regions.maskOf(region, {1120, 100})), region.mField2);
    }
}

TEST(RegionsTest, TheLargestIsTracedAlongItsEdge) {
    cv::Mat mask = cv::Mat::zeros(240, 320, CV_8U);
    mask(cv::Rect(10, 20, 30, 40)).setTo(255);
    mask(cv::Rect(200, 100, 50, 50)).setTo(255);
    mask(cv::Rect(210, 110, 9, 9)).setTo(0);
    const Regions regions(mask, 0.0);
    const Regions::BlobInfo& region = *regions.largest();
    EXPECT_EQ(region.mField2, 50 * 50) << "its hole included";
    VisContourSamplePts outline;
    for (int i = 0; i < 2; ++i)
        regions.traceOutline(region, outline);
    ASSERT_EQ(outline.mPoints.size(), 25U) << "every eighth of 196 pixels, once";
    EXPECT_EQ(outline.mPoints[0].mVec4[1], 100.0) << "it begins at the top";
    for (std::size_t i = 0; i < 25; ++i)
        EXPECT_EQ(outline.mEdges[i].mPointRefs[1], outline.mEdges[(i + 1) % 25].mPointRefs[0]) << "it is closed";
}

TEST(RegionsTest, NoRegionsAndWrongMasks) {
    EXPECT_EQ(Regions(cv::Mat::zeros(9, 9, CV_8U), 0.0).largest(), nullptr);
    EXPECT_EQ(Regions(cv::Mat(), 0.0).largest(), nullptr);
    EXPECT_DEATH(Regions(cv::Mat(9, 9, CV_8UC3), 0.0), "the mask is not 8-bit");
    const Regions none(cv::Mat::zeros(9, 9, CV_8U), 0.0);
    EXPECT_DEATH(none.maskOf(Regions::BlobInfo(), {9, 9}), "not one of this object's");
}

}  // namespace
