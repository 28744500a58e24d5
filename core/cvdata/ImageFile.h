#pragma once

#include "core/imagefiles/ImageFiles.h"

#include <string>

namespace tarvos::core::cvdata {

/// Reads the image file at @p path into rows that @p makeRows hands out for @p image. When that cannot be done for
/// whatever reason, says so in one line on standard error and returns false. Throws nothing but `std::bad_alloc`.
bool readImageFile(const std::string& path, imagefiles::MakeRows* makeRows, void* image);

/// Writes @p pixels, whose channels start with red instead of blue if so said, to @p path, in the format of the path's
/// ending; whole or not at all. Failing and throwing as above.
bool writeImageFile(const std::string& path, const IplImage* pixels, bool redFirst);

}  // namespace tarvos::core::cvdata
