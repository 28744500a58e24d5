#pragma once

#include <opencv2/core.hpp>
#include <tarvos/core/Export.h>
#include <tarvos/core/cvdata/features/Blobs.h>
#include <tarvos/core/cvdata/features/VisContourSamplePts.h>

#include <vector>

namespace tarvos::vision {

/// The connected regions (8 neighbours) of a mask as a list of blobs. A hole belongs to the region around it, with
/// whatever is in the hole.
///
/// In a record, `mBlock` is the region's box (x, y, width, height) and `mVector` the centre of that box (x, y), in
/// pixels; `mField2` is its area in pixels, holes included, and `mField1` the index of its contour, by which maskOf()
/// and traceOutline() find it: they abort unless there is such a contour, with the record's box. The other fields are
/// 0.
///
/// @snippet vision.cpp regions
/// @ingroup vision
class TARVOS_CORE_EXPORT Regions {
public:
    /// The record of a region.
    using BlobInfo = core::cvdata::Blobs::BlobInfo;

    /// Finds the regions of at least @p minArea pixels in @p mask, where it is not 0. Coordinates are those of a
    /// frame in which the mask's upper left pixel is at @p corner. Aborts unless the mask is CV_8UC1 or empty.
    Regions(const cv::Mat& mask, double minArea, const cv::Point& corner = {});

    /// The regions, in no particular order.
    const core::cvdata::Blobs& blobs() const { return mBlobs; }
    /// The region with the largest area, null if there is none. Valid as long as this object.
    const BlobInfo* largest() const;
    /// A mask of a frame's @p size (CV_8UC1): 255 in one of the regions, its holes included, 0 elsewhere.
    cv::Mat maskOf(const BlobInfo& region, const cv::Size& size) const;
    /// Samples the outline of one of the regions at every eighth pixel into @p outline, replacing its content: `mVec4`
    /// of a point is its position (x, y, 0, 0), and each edge joins a point to the next, the last one to the first.
    void traceOutline(const BlobInfo& region, core::cvdata::VisContourSamplePts& outline) const;

private:
    core::cvdata::Blobs mBlobs;
    std::vector<std::vector<cv::Point>> mContours;  ///< all pixels along each region's edge, in the frame

    const std::vector<cv::Point>& contourOf(const BlobInfo& region) const;
};

/// The box of a region.
/// @ingroup vision
TARVOS_CORE_EXPORT cv::Rect boxOf(const Regions::BlobInfo& region);

}  // namespace tarvos::vision
