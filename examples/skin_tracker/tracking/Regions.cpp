#include "Regions.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>

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

Regions::Regions(const cv::Mat& mask, double leastArea, const cv::Point& corner) {
    cv::findContours(mask, mContours, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE, corner);
    for (std::size_t i = 0; i < mContours.size(); ++i) {
        const auto onEdge = static_cast<double>(mContours[i].size());
        const int area = cvRound(cv::contourArea(mContours[i]) + onEdge / 2) + 1;  // Pick's theorem
        if (area < leastArea)
            continue;
        const cv::Rect box = cv::boundingRect(mContours[i]);
        mBlobs.addBlob();
        BlobInfo& blob = mBlobs.mBlobs.back();
        blob.mBlock = {box.x, box.y, box.width, box.height};
        blob.mVector[0] = box.x + box.width / 2.0;
        blob.mVector[1] = box.y + box.height / 2.0;
        blob.mField1 = static_cast<int>(i);
        blob.mField2 = area;
    }
}

const Regions::BlobInfo* Regions::largest() const {
    const auto found = std::max_element(mBlobs.mBlobs.begin(), mBlobs.mBlobs.end(),
                                        [](const auto& a, const auto& b) { return a.mField2 < b.mField2; });
    return found != mBlobs.mBlobs.end() ? &*found : nullptr;
}

cv::Mat Regions::maskOf(const BlobInfo& blob, const cv::Size& size) const {
    cv::Mat mask = cv::Mat::zeros(size, CV_8UC1);
    cv::drawContours(mask, mContours, blob.mField1, 255, cv::FILLED);
    return mask;
}

void Regions::traceOutline(const BlobInfo& blob, VisContourSamplePts& outline) const {
    outline.clear();
    outline.mPoints.clear();
    const std::vector<cv::Point>& curve = mContours[static_cast<std::size_t>(blob.mField1)];
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
