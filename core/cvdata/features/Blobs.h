#pragma once

#include <tarvos/core/cvdata/VisualFeatures.h>
#include <tarvos/math/SquareMatrix.h>
#include <tarvos/math/Vector.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarvos::core::cvdata {

/// A list of blobs: connected regions that an application found in an image.
///
/// @snippet features.cpp blobs
/// @ingroup features
class TARVOS_CORE_EXPORT Blobs : public VisualFeatures {
public:
    /// One blob. The core gives the fields no meaning; a new record is all zero. What an application usually keeps in
    /// them is noted, but not enforced; what vision::Regions keeps there is said at that class.
    struct BlobInfo {
        double mValues[5] = {};                ///< measures of the region, for instance a score or an elongation
        std::int32_t mField1 = 0;              ///< for instance the label in a label image
        std::int32_t mField2 = 0;              ///< for instance the area in pixels
        std::array<std::int32_t, 4> mBlock{};  ///< for instance the box: x, y, width, height in pixels
        math::SquareMatrix mMatrix1{2};        ///< for instance the covariance of the pixels' positions, 2 x 2
        math::SquareMatrix mMatrix2{2};        ///< for instance its inverse, 2 x 2
        math::Vector mVector{2};               ///< for instance the centre: x, y
    };

    /// An empty list.
    Blobs() : VisualFeatures(REPR_BLOBS) {}
    /// Copies the records, as assignment does; mFlag is false.
    Blobs(const Blobs& other) : VisualFeatures(REPR_BLOBS), mBlobs(other.mBlobs) {}
    /// Takes over the records and mFlag of @p other, which becomes empty.
    Blobs(Blobs&& other) noexcept = default;

    /// The number of records.
    virtual std::size_t dimension() const { return mBlobs.size(); }
    /// Copies all members of all records; mFlag stays. There is no move assignment. Records that remain keep their
    /// addresses unless the list outgrows its capacity. When it throws, this list is unchanged.
    virtual Blobs& operator=(const Blobs& other);

    /// Appends one new record.
    void addBlob() { mBlobs.emplace_back(); }
    /// Removes all records.
    void clear() { mBlobs.clear(); }

    std::vector<BlobInfo> mBlobs;  ///< in the order they were added

protected:
    using VisualFeatures::operator=;
};

}  // namespace tarvos::core::cvdata
