#pragma once

#include <opencv2/core/types_c.h>

#include <memory>
#include <string>

namespace tarvos::core::cvdata {

struct ImageRelease {
    void operator()(IplImage* image) const noexcept;
};
using LoadedImage = std::unique_ptr<IplImage, ImageRelease>;

/// Decodes the file at @p path to 8-bit BGR with rows aligned to 4 bytes, the pixels as stored (no rotation by EXIF).
/// Null for whatever cannot be decoded, and then not a word on standard error; throws only `std::bad_alloc`.
LoadedImage loadColourImage(const std::string& path);

}  // namespace tarvos::core::cvdata
