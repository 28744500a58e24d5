#pragma once

#include <tarvos/core/cvdata/TiledImage.h>

#include <cstddef>
#include <string>
#include <vector>

namespace skin_tracker {

/// Collects frames of a sequence of unknown length and lays 16 of them, evenly spread, out as a 4 x 4 mosaic.
class Mosaic {
public:
    /// Offers the next frame of the sequence, of which a copy may be kept, not larger than a cell and with @p caption.
    void add(const tarvos::core::cvdata::Image& frame, const std::string& caption);

    /// The mosaic; cells without a frame are black. At least one frame must have been added.
    tarvos::core::cvdata::TiledImage compose();

private:
    std::vector<tarvos::core::cvdata::Image> mKept;  ///< every mStride-th frame offered
    std::size_t mStride = 1;
    std::size_t mOffered = 0;
};

}  // namespace skin_tracker
