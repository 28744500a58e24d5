#pragma once

#include <opencv2/core.hpp>
#include <tarvos/core/Export.h>
#include <tarvos/core/cvdata/features/ColourHist2d.h>

#include <array>

/// Fills, compares and applies colour histograms, marks skin, finds regions and filters states.
namespace tarvos::vision {

/// @file
/// Colour histograms of 8-bit pixels with three channels (CV_8UC3; an Image comes as `matView(image)`), which may be a
/// part of a larger `cv::Mat`.
///
/// A channel's value v falls into bin v x bins / limit, in whole numbers; a value that is not below its limit is not
/// counted. The entry of bins (b1, b2, b3) is element `(b1 * bins2 + b2) * bins3 + b3` of the histogram's data, the
/// order of OpenCV's `calcHist`. The functions abort for pixels of another type, a mask of another type or size, a
/// limit below 1 and a histogram whose data does not have its shape.
///
/// @snippet vision.cpp histogram

/// The exclusive upper limit of each channel's values.
/// @ingroup vision
using ChannelLimits = std::array<int, 3>;
/// The limits of 8-bit blue, green and red, or of any channels that use all 8 bits.
/// @ingroup vision
inline constexpr ChannelLimits BGR_LIMITS{256, 256, 256};
/// The limits of OpenCV's 8-bit hue, saturation and value (`cv::COLOR_BGR2HSV`).
/// @ingroup vision
inline constexpr ChannelLimits HSV_LIMITS{180, 256, 256};

/// Adds 1 to the entry of each of the @p pixels; with a @p mask (CV_8UC1, of their size) that is not empty, only where
/// it is not 0.
/// @ingroup vision
TARVOS_CORE_EXPORT void addPixels(core::cvdata::ColourHist2d& histogram, const cv::Mat& pixels,
                                  const cv::Mat& mask = {}, const ChannelLimits& limits = BGR_LIMITS);

/// Scales the entries to a sum of 1; a zero histogram stays zero.
/// @ingroup vision
TARVOS_CORE_EXPORT void normalize(core::cvdata::ColourHist2d& histogram);

/// The Bhattacharyya distance of two histograms of the same shape, whatever their sums: from 0 (proportional) to 1
/// (nothing in common, or one of them zero), as `cv::HISTCMP_BHATTACHARYYA`. Aborts for different shapes and for
/// negative entries.
/// @ingroup vision
TARVOS_CORE_EXPORT double bhattacharyyaDistance(const core::cvdata::ColourHist2d& a,
                                                const core::cvdata::ColourHist2d& b);

/// The entry of each of the @p pixels in @p histogram, scaled so that the largest entry is 255 and rounded (CV_8UC1, of
/// their size). 0 for colours that are not counted, and everywhere for a zero histogram.
/// @ingroup vision
TARVOS_CORE_EXPORT cv::Mat backProject(const core::cvdata::ColourHist2d& histogram, const cv::Mat& pixels,
                                       const ChannelLimits& limits = BGR_LIMITS);

}  // namespace tarvos::vision
