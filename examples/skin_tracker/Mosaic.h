#pragma once

#include "core/cvdata/TiledImage.h"

#include <cstddef>
#include <vector>

namespace skin_tracker {

/// Collects frames of a sequence of unknown length and lays 16 of them, evenly spread, out as a 4 x 4 mosaic.
class Mosaic {
public:
    /// Whether the frame after the ones offered so far may be one of the 16; if so, add() it, else pass().
    bool wantsNext() const { return mOffered % mStride == 0; }
    void pass() { ++mOffered; }
    /// Keeps a copy of @p frame, not larger than a cell.
    void add(const tarvos::core::cvdata::Image& frame);

    /// The mosaic of the frames kept; with fewer than 16, the cells left over are black. At least one frame
    /// must have been added.
    tarvos::core::cvdata::TiledImage compose();

private:
    std::vector<tarvos::core::cvdata::Image> mKept;  ///< every mStride-th frame offered
    std::size_t mStride = 1;
    std::size_t mOffered = 0;
};

}  // namespace skin_tracker
