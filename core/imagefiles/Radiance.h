#pragma once

#include <cstddef>

namespace tarvos::core::imagefiles {

/// Whether the bytes begin like a Radiance picture (.hdr).
bool isRadiance(const unsigned char* bytes, std::size_t size);

/// Whether a Radiance picture is whole: header, size and every row. OpenCV's reader leaves its file open when it fails,
/// so that it is given only what it can read to the end.
bool isWholeRadiance(const unsigned char* bytes, std::size_t size);

}  // namespace tarvos::core::imagefiles
