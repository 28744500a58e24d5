#include "Regions.h"

#include <opencv2/imgproc.hpp>

#include <algorithm>
#include <cmath>
#include <vector>

namespace skin_tracker {

namespace {

using tarvos::core::cvdata::Blobs;
using tarvos::core::cvdata::VisContourSamplePts;
using tarvos::math::Matrix;
using tarvos::math::Vector2;
using tarvos::math::Vector4;

/// Pixels from one sample of an outline to the next.
constexpr std::size_t SAMPLING = 8;

void describe(const cv::Mat& pixels, const cv::Point& corner, Blobs::BlobInfo& blob) {
    const cv::Moments moments = cv::moments(pixels, true);
    blob.mVector[0] = corner.x + moments.m10 / moments.m00;
    blob.mVector[1] = corner.y + moments.m01 / moments.m00;
    // A pixel is not a point but a square of side 1, which keeps thin regions from being singular.
    blob.mMatrix1(0, 0) = moments.mu20 / moments.m00 + 1.0 / 12.0;
    blob.mMatrix1(1, 1) = moments.mu02 / moments.m00 + 1.0 / 12.0;
    blob.mMatrix1(0, 1) = blob.mMatrix1(1, 0) = moments.mu11 / moments.m00;
    blob.mMatrix2 = blob.mMatrix1.invert(Matrix::INVERSION_LU);
}

/// A point of the closed curve @p outline, with the normal that points out of what it encloses.
Vector4 sampleOf(const std::vector<cv::Point>& outline, std::size_t index) {
    const std::size_t size = outline.size();
    const cv::Point along =
        outline[(index + SAMPLING / 2) % size] - outline[(index + size - SAMPLING / 2 % size) % size];
    const double length = std::max(1.0, std::hypot(along.x, along.y));
    // OpenCV's outer outlines run counter-clockwise as seen on the screen, the inside on their left.
    return Vector4(outline[index].x, outline[index].y, -along.y / length, along.x / length);
}

}  // namespace

void tidy(cv::Mat& mask) {
    static const cv::Mat speck = cv::getStructuringElement(cv::MORPH_ELLIPSE, cv::Size(3, 3));
    static const cv::Mat hole = cv::getStructuringElement(cv::MORPH_ELLIPSE, cv::Size(7, 7));
    cv::morphologyEx(mask, mask, cv::MORPH_OPEN, speck);
    cv::morphologyEx(mask, mask, cv::MORPH_CLOSE, hole);
}

void keepRegionsTouching(const cv::Mat& other, cv::Mat& mask) {
    cv::Mat labels;
    const int count = cv::connectedComponents(mask, labels);
    std::vector<unsigned char> touching(static_cast<std::size_t>(count), 0);
    for (int row = 0; row < mask.rows; ++row)
        for (int col = 0; col < mask.cols; ++col)
            if (other.at<unsigned char>(row, col) != 0)
                touching[static_cast<std::size_t>(labels.at<int>(row, col))] = 255;
    touching[0] = 0;
    for (int row = 0; row < mask.rows; ++row)
        for (int col = 0; col < mask.cols; ++col)
            mask.at<unsigned char>(row, col) = touching[static_cast<std::size_t>(labels.at<int>(row, col))];
}

Regions::Regions(const cv::Mat& mask, double leastArea) {
    cv::Mat statistics;
    cv::Mat centroids;
    const int count = cv::connectedComponentsWithStats(mask, mLabels, statistics, centroids);
    for (int label = 1; label < count; ++label) {
        const int* entry = statistics.ptr<int>(label);
        if (entry[cv::CC_STAT_AREA] < leastArea)
            continue;
        mBlobs.addBlob();
        Blobs::BlobInfo& blob = mBlobs.mBlobs.back();
        blob.mField1 = label;
        blob.mField2 = entry[cv::CC_STAT_AREA];
        blob.mBlock = {entry[cv::CC_STAT_LEFT], entry[cv::CC_STAT_TOP], entry[cv::CC_STAT_WIDTH],
                       entry[cv::CC_STAT_HEIGHT]};
        describe(mLabels(boxOf(blob)) == label, boxOf(blob).tl(), blob);
    }
}

cv::Rect boxOf(const Blobs::BlobInfo& blob) {
    return {blob.mBlock[0], blob.mBlock[1], blob.mBlock[2], blob.mBlock[3]};
}

void traceOutline(const cv::Mat& mask, VisContourSamplePts& outline) {
    outline.clear();
    outline.mPoints.clear();
    std::vector<std::vector<cv::Point>> curves;
    cv::findContours(mask, curves, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE);
    for (const auto& curve : curves) {
        for (std::size_t i = 0; i < curve.size(); i += SAMPLING) {
            outline.mPoints.emplace_back();
            outline.mPoints.back().mVec4 = sampleOf(curve, i);
            outline.mPoints.back().mField = static_cast<std::int32_t>(&curve - curves.data());
        }
    }
    // Only now do the points stay where they are. Each is joined to the next of its curve, the last one to the first.
    auto first = outline.mPoints.begin();
    while (first != outline.mPoints.end()) {
        const auto end = std::find_if(first, outline.mPoints.end(),
                                      [&](const auto& point) { return point.mField != first->mField; });
        for (auto point = first; point != end; ++point) {
            VisContourSamplePts::CPOINT& next = point + 1 != end ? *(point + 1) : *first;
            outline.mEdges.emplace_back();
            VisContourSamplePts::Edge& edge = outline.mEdges.back();
            edge.mPointRefs = {&*point, &next};
            edge.mFirstVec4 = point->mVec4;
            edge.mSecondVec4 = next.mVec4;
            edge.mVec2 = Vector2(next.mVec4[0] - point->mVec4[0], next.mVec4[1] - point->mVec4[1]);
            edge.mField = point->mField;
        }
        first = end;
    }
}

}  // namespace skin_tracker
