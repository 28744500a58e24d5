#pragma once

#include <opencv2/core.hpp>
#include <tarvos/core/cvdata/features/Blobs.h>
#include <tarvos/core/cvdata/features/VisContourSamplePts.h>

namespace skin_tracker {

/// Removes specks from @p mask (8-bit, one channel, 0 and 255) and closes small holes.
void tidy(cv::Mat& mask);

/// Sets the regions of @p mask that have no pixel in common with @p other to 0.
void keepRegionsTouching(const cv::Mat& other, cv::Mat& mask);

/// The connected regions of a mask. Each record holds the centroid in `mVector`, the covariance of the pixels' places
/// in `mMatrix1` and its inverse in `mMatrix2`, the box (x, y, width, height) in `mBlock`, the label in `mField1` and
/// the area in pixels in `mField2`.
class Regions {
public:
    /// Finds the regions of at least @p leastArea pixels in @p mask.
    Regions(const cv::Mat& mask, double leastArea);

    const tarvos::core::cvdata::Blobs& blobs() const { return mBlobs; }
    /// The pixels of one region as a mask.
    cv::Mat maskOf(const tarvos::core::cvdata::Blobs::BlobInfo& blob) const { return mLabels == blob.mField1; }

private:
    tarvos::core::cvdata::Blobs mBlobs;
    cv::Mat mLabels;
};

cv::Rect boxOf(const tarvos::core::cvdata::Blobs::BlobInfo& blob);

/// Samples the outer outline of @p mask every few pixels into @p outline: points hold place and outward unit normal
/// (x, y, nx, ny) in `mVec4`; each edge refers to the two points it joins and holds its direction in `mVec2`.
void traceOutline(const cv::Mat& mask, tarvos::core::cvdata::VisContourSamplePts& outline);

}  // namespace skin_tracker
