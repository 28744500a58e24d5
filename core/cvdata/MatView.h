#pragma once

#include "Image.h"

#include <opencv2/core.hpp>
#include <opencv2/core/core_c.h>

/// @file
/// Between Image and `cv::Mat`. Include this header only where OpenCV's C++ side is wanted: no other header needs it.

namespace tarvos::core::cvdata {

/// A view of the pixels of @p image for OpenCV's C++ functions: no pixel is copied, and writes reach the image, whose
/// region of interest is not looked at. Empty for an empty image. Valid until the image is given another size, assigned
/// an image of another geometry, moved from or destroyed.
inline cv::Mat matView(Image& image) {
    if (image.empty())
        return {};
    IplImage whole = *image.iplImage();
    whole.roi = nullptr;
    return cv::cvarrToMat(&whole);
}
/// A view of the pixels of @p image, to be read only: `cv::Mat` knows no better way to say so.
inline const cv::Mat matView(const Image& image) {
    return matView(const_cast<Image&>(image));
}
/// A view would outlive the image.
cv::Mat matView(Image&& image) = delete;

/// A new image with a copy of the pixels of @p pixels, which may be a part of another `cv::Mat`: of 2 dimensions, with
/// 1, 3 or 4 channels, taken as CHANNELS_GRAY, CHANNELS_BGR and CHANNELS_BGRA. Empty when @p pixels is. Stops the
/// process as `Image(const IplImage*)` does.
inline Image imageOf(const cv::Mat& pixels) {
    if (pixels.empty())
        return {};
    const IplImage header = cvIplImage(pixels);
    return Image(&header);
}

}  // namespace tarvos::core::cvdata
