#pragma once

#include <opencv2/core.hpp>
#include <tarvos/core/cvdata/features/Blobs.h>
#include <tarvos/core/cvdata/features/VisContourSamplePts.h>

#include <vector>

namespace skin_tracker {

/// Removes specks from @p mask (8-bit, one channel, 0 and 255) and closes small holes.
void tidy(cv::Mat& mask);

/// The connected regions of a mask, their holes filled. Each record holds the box (x, y, width, height) in `mBlock`,
/// its centre in `mVector`, the index of the region's contour in `mField1` and the area in pixels in `mField2`.
class Regions {
public:
    using BlobInfo = tarvos::core::cvdata::Blobs::BlobInfo;

    /// Finds the regions of at least @p leastArea pixels in @p mask, whose first pixel is at @p corner of the frame.
    Regions(const cv::Mat& mask, double leastArea, const cv::Point& corner = {});

    const tarvos::core::cvdata::Blobs& blobs() const { return mBlobs; }
    /// The region with the largest area, null if there is none.
    const BlobInfo* largest() const;
    /// The pixels of one region as a mask of the frame's @p size.
    cv::Mat maskOf(const BlobInfo& blob, const cv::Size& size) const;
    /// Samples the outline of one region into @p outline: points hold the position (x, y) in `mVec4`, edges join two.
    void traceOutline(const BlobInfo& blob, tarvos::core::cvdata::VisContourSamplePts& outline) const;

private:
    tarvos::core::cvdata::Blobs mBlobs;
    std::vector<std::vector<cv::Point>> mContours;  ///< all pixels along each region's edge, in the frame
};

cv::Rect boxOf(const Regions::BlobInfo& blob);

}  // namespace skin_tracker
