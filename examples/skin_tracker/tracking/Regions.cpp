#include "Regions.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <vector>

namespace skin_tracker {

namespace {

using tarvos::core::cvdata::VisContourSamplePts;
using tarvos::math::Vector4;

/// Pixels from one sample of an outline to the next.
constexpr std::size_t SAMPLING = 8;

}  // namespace

void tidy(cv::Mat& mask) {
    static const cv::Mat speck = cv::getStructuringElement(cv::MORPH_ELLIPSE, cv::Size(3, 3));
    static const cv::Mat hole = cv::getStructuringElement(cv::MORPH_ELLIPSE, cv::Size(7, 7));
    cv::morphologyEx(mask, mask, cv::MORPH_OPEN, speck);
    cv::morphologyEx(mask, mask, cv::MORPH_CLOSE, hole);
}

Regions::Regions(const cv::Mat& mask, double leastArea, const cv::Point& corner) : mCorner(corner) {
    cv::Mat stats;
    cv::Mat centroids;
    const int labels = cv::connectedComponentsWithStats(mask, mLabels, stats, centroids);
    for (int label = 1; label < labels; ++label) {  // 0 is the background
        const int* stat = stats.ptr<int>(label);
        if (stat[cv::CC_STAT_AREA] < leastArea)
            continue;
        mBlobs.addBlob();
        BlobInfo& blob = mBlobs.mBlobs.back();
        blob.mBlock = {corner.x + stat[cv::CC_STAT_LEFT], corner.y + stat[cv::CC_STAT_TOP], stat[cv::CC_STAT_WIDTH],
                       stat[cv::CC_STAT_HEIGHT]};
        blob.mVector[0] = blob.mBlock[0] + blob.mBlock[2] / 2.0;
        blob.mVector[1] = blob.mBlock[1] + blob.mBlock[3] / 2.0;
        blob.mField1 = label;
        blob.mField2 = stat[cv::CC_STAT_AREA];
    }
}

const Regions::BlobInfo* Regions::largest() const {
    const auto found = std::max_element(mBlobs.mBlobs.begin(), mBlobs.mBlobs.end(),
                                        [](const auto& a, const auto& b) { return a.mField2 < b.mField2; });
    return found != mBlobs.mBlobs.end() ? &*found : nullptr;
}

cv::Mat Regions::maskOf(const BlobInfo& blob, const cv::Size& size) const {
    const cv::Rect box = boxOf(blob);
    cv::Mat mask = cv::Mat::zeros(size, CV_8UC1);
    mask(box).setTo(255, mLabels(box - mCorner) == blob.mField1);
    return mask;
}

void Regions::traceOutline(const BlobInfo& blob, VisContourSamplePts& outline) const {
    outline.clear();
    outline.mPoints.clear();
    const cv::Rect box = boxOf(blob);
    std::vector<std::vector<cv::Point>> curves;
    cv::findContours(mLabels(box - mCorner) == blob.mField1, curves, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE,
                     box.tl());
    const std::vector<cv::Point>& curve = curves.front();
    for (std::size_t i = 0; i < curve.size(); i += SAMPLING) {
        outline.mPoints.emplace_back();
        outline.mPoints.back().mVec4 = Vector4(curve[i].x, curve[i].y, 0.0, 0.0);
    }
    // Edges last: until now the points have moved in memory.
    for (std::size_t i = 0; i < outline.mPoints.size(); ++i) {
        outline.mEdges.emplace_back();
        outline.mEdges.back().mPointRefs = {&outline.mPoints[i], &outline.mPoints[(i + 1) % outline.mPoints.size()]};
    }
}

cv::Rect boxOf(const Regions::BlobInfo& blob) {
    return {blob.mBlock[0], blob.mBlock[1], blob.mBlock[2], blob.mBlock[3]};
}

}  // namespace skin_tracker
