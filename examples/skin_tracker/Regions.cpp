#include "Regions.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace skin_tracker {

namespace {

using tarvos::core::cvdata::VisContourSamplePts;
using tarvos::math::Vector4;

/// Pixels from one sample of an outline to the next.
constexpr std::size_t SAMPLING = 8;

/// The pixels on and within an outline that names each of its pixels: Pick's theorem.
int areaOf(const std::vector<cv::Point>& outline) {
    return cvRound(cv::contourArea(outline) + static_cast<double>(outline.size()) / 2 + 1);
}

}  // namespace

void tidy(cv::Mat& mask) {
    static const cv::Mat speck = cv::getStructuringElement(cv::MORPH_ELLIPSE, cv::Size(3, 3));
    static const cv::Mat hole = cv::getStructuringElement(cv::MORPH_ELLIPSE, cv::Size(7, 7));
    cv::morphologyEx(mask, mask, cv::MORPH_OPEN, speck);
    cv::morphologyEx(mask, mask, cv::MORPH_CLOSE, hole);
}

void keepRegionsTouching(const cv::Mat& other, cv::Mat& mask) {
    constexpr unsigned char KEPT = 128;
    for (int row = 0; row < mask.rows; ++row)
        for (int col = 0; col < mask.cols; ++col)
            if (other.at<unsigned char>(row, col) != 0 && mask.at<unsigned char>(row, col) == 255)
                cv::floodFill(mask, {col, row}, KEPT, nullptr, {}, {}, 8);
    mask = mask == KEPT;
}

Regions::Regions(const cv::Mat& mask, double leastArea, const cv::Point& corner) {
    cv::findContours(mask, mOutlines, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE, corner);
    for (std::size_t i = 0; i < mOutlines.size(); ++i) {
        const int area = areaOf(mOutlines[i]);
        if (area < leastArea)
            continue;
        const cv::Rect box = cv::boundingRect(mOutlines[i]);
        mBlobs.addBlob();
        BlobInfo& blob = mBlobs.mBlobs.back();
        blob.mVector[0] = box.x + box.width / 2.0;
        blob.mVector[1] = box.y + box.height / 2.0;
        blob.mBlock = {box.x, box.y, box.width, box.height};
        blob.mField1 = static_cast<std::int32_t>(i);
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
    cv::drawContours(mask, mOutlines, blob.mField1, cv::Scalar(255), cv::FILLED);
    return mask;
}

void Regions::traceOutline(const BlobInfo& blob, VisContourSamplePts& outline) const {
    outline.clear();
    outline.mPoints.clear();
    const std::vector<cv::Point>& curve = mOutlines[static_cast<std::size_t>(blob.mField1)];
    for (std::size_t i = 0; i < curve.size(); i += SAMPLING) {
        outline.mPoints.emplace_back();
        outline.mPoints.back().mVec4 = Vector4(curve[i].x, curve[i].y, 0.0, 0.0);
    }
    // Only now do the points stay where they are.
    for (std::size_t i = 0; i < outline.mPoints.size(); ++i) {
        outline.mEdges.emplace_back();
        outline.mEdges.back().mPointRefs = {&outline.mPoints[i], &outline.mPoints[(i + 1) % outline.mPoints.size()]};
    }
}

cv::Rect boxOf(const Regions::BlobInfo& blob) {
    return {blob.mBlock[0], blob.mBlock[1], blob.mBlock[2], blob.mBlock[3]};
}

}  // namespace skin_tracker
