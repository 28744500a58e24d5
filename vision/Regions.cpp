#include <opencv2/imgproc.hpp>
#include <tarvos/core/Contract.h>
#include <tarvos/vision/Regions.h>

#include <algorithm>

namespace tarvos::vision {

namespace {

using core::cvdata::VisContourSamplePts;
using math::Vector4;

/// Pixels from one sample of an outline to the next.
constexpr std::size_t SAMPLING = 8;

}  // namespace

Regions::Regions(const cv::Mat& mask, double minArea, const cv::Point& corner) {
    TARVOS_REQUIRE((mask.type() == CV_8UC1 || mask.empty()) && "Regions: the mask is not 8-bit with 1 channel.");
    if (!mask.empty())
        cv::findContours(mask, mContours, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE, corner);
    for (std::size_t i = 0; i < mContours.size(); ++i) {
        const auto onEdge = static_cast<double>(mContours[i].size());
        const int area = cvRound(cv::contourArea(mContours[i]) + onEdge / 2) + 1;  // Pick's theorem
        if (area < minArea)
            continue;
        const cv::Rect box = cv::boundingRect(mContours[i]);
        mBlobs.addBlob();
        BlobInfo& region = mBlobs.mBlobs.back();
        region.mBlock = {box.x, box.y, box.width, box.height};
        region.mVector[0] = box.x + box.width / 2.0;
        region.mVector[1] = box.y + box.height / 2.0;
        region.mField1 = static_cast<int>(i);
        region.mField2 = area;
    }
}

const Regions::BlobInfo* Regions::largest() const {
    const auto found = std::max_element(mBlobs.mBlobs.begin(), mBlobs.mBlobs.end(),
                                        [](const auto& a, const auto& b) { return a.mField2 < b.mField2; });
    return found != mBlobs.mBlobs.end() ? &*found : nullptr;
}

cv::Mat Regions::maskOf(const BlobInfo& region, const cv::Size& size) const {
    const std::vector<std::vector<cv::Point>> contours{contourOf(region)};
    cv::Mat mask = cv::Mat::zeros(size, CV_8UC1);
    cv::drawContours(mask, contours, 0, 255, cv::FILLED);
    return mask;
}

void Regions::traceOutline(const BlobInfo& region, VisContourSamplePts& outline) const {
    const std::vector<cv::Point>& contour = contourOf(region);
    std::vector<VisContourSamplePts::CPOINT> points((contour.size() + SAMPLING - 1) / SAMPLING);
    std::vector<VisContourSamplePts::Edge> edges(points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        points[i].mVec4 = Vector4(contour[i * SAMPLING].x, contour[i * SAMPLING].y, 0.0, 0.0);
        edges[i].mPointRefs = {&points[i], &points[(i + 1) % points.size()]};
    }
    outline.mPoints.swap(points);
    outline.mEdges.swap(edges);
}

const std::vector<cv::Point>& Regions::contourOf(const BlobInfo& region) const {
    TARVOS_REQUIRE((region.mField1 >= 0 && static_cast<std::size_t>(region.mField1) < mContours.size() &&
                    cv::boundingRect(mContours[static_cast<std::size_t>(region.mField1)]) == boxOf(region)) &&
                   "Regions: the region is not one of this object's.");
    return mContours[static_cast<std::size_t>(region.mField1)];
}

cv::Rect boxOf(const Regions::BlobInfo& region) {
    return {region.mBlock[0], region.mBlock[1], region.mBlock[2], region.mBlock[3]};
}

}  // namespace tarvos::vision
