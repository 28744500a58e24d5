#include <tarvos/core/cvdata/features/Blobs.h>

#include <algorithm>

namespace tarvos::core::cvdata {

Blobs& Blobs::operator=(const Blobs& other) {
    if (this == &other)
        return *this;
    std::vector<BlobInfo> copies(other.mBlobs);
    mBlobs.resize(copies.size());
    std::move(copies.begin(), copies.end(), mBlobs.begin());
    return *this;
}

}  // namespace tarvos::core::cvdata
