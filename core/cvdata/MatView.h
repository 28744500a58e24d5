#pragma once

#include <opencv2/core.hpp>
#include <opencv2/core/core_c.h>
#include <tarvos/core/cvdata/Image.h>

/// @file
/// Image and `cv::Mat`, as in the listing of Image. Include this only where OpenCV's C++ interface is used.

namespace tarvos::core::cvdata {

/// A view of the pixels of @p image for OpenCV's C++ functions: no pixel is copied, and writes reach the image, whose
/// region of interest is ignored. Empty for an empty image. Aborts where the stride is not a multiple of a value's
/// bytes, on which OpenCV computes wrong results (see Image::iplImage()); matCopy() serves there. Valid until the
/// buffer (see Image::imageBuffer()) or widthStep() changes, or the image is moved from or destroyed.
/// @ingroup images
TARVOS_CORE_EXPORT cv::Mat matView(Image& image);
/// A read-only view of the pixels of @p image. Copying the result drops constness.
/// @ingroup images
TARVOS_CORE_EXPORT const cv::Mat matView(const Image& image);
/// Deleted: the view would dangle.
cv::Mat matView(const Image&& image) = delete;

/// A copy of the pixels of @p image whose rows are packed. Empty for an empty image.
/// @ingroup images
TARVOS_CORE_EXPORT cv::Mat matCopy(const Image& image);

/// A new image with a copy of the pixels of @p pixels, which may be a part of another `cv::Mat`: with 2 dimensions and
/// 1, 3 or 4 channels, taken as CHANNELS_GRAY, CHANNELS_BGR and CHANNELS_BGRA. Its rows are packed as OpenCV's are, so
/// `imageOf(cv::Mat(height, width, CV_32F))` is an image of any width that OpenCV can compute on. Empty when @p pixels
/// is. Aborts for another number of channels or dimensions and for half floats.
/// @ingroup images
TARVOS_CORE_EXPORT Image imageOf(const cv::Mat& pixels);

}  // namespace tarvos::core::cvdata
