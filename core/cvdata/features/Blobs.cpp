#include <tarvos/core/cvdata/features/Blobs.h>

#include <algorithm>

namespace tarvos::core::cvdata {

Blobs::BlobInfo::BlobInfo() : mMatrix1(2), mMatrix2(2), mVector(2) {}

Blobs::Blobs() : VisualFeatures(REPR_BLOBS) {}

Blobs::Blobs(const Blobs& other) : VisualFeatures(REPR_BLOBS), mBlobs(other.mBlobs) {}

Blobs::Blobs(Blobs&& other) noexcept = default;

std::size_t Blobs::dimension() const {
    return mBlobs.size();
}

Blobs& Blobs::operator=(const Blobs& other) {
    if (this == &other)
        return *this;
    std::vector<BlobInfo> copies(other.mBlobs);
    mBlobs.resize(copies.size());
    std::move(copies.begin(), copies.end(), mBlobs.begin());
    return *this;
}

void Blobs::addBlob() {
    mBlobs.emplace_back();
}

void Blobs::clear() {
    mBlobs.clear();
}

}  // namespace tarvos::core::cvdata
