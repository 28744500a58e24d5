#include "core/cvdata/features/Blobs.h"

#include <algorithm>
#include <utility>

namespace tarvos::core::cvdata {

namespace {

bool isWithoutHeap(const Blobs::BlobInfo& blob) {
    return blob.mMatrix1.isInside() && blob.mMatrix2.isInside() && blob.mVector.isInside();
}

}  // namespace

Blobs::BlobInfo::BlobInfo() : mMatrix1(2), mMatrix2(2), mVector(2) {}

Blobs::Blobs() : VisualFeatures(REPR_BLOBS) {}

Blobs::Blobs(const Blobs& other) : VisualFeatures(REPR_BLOBS), mBlobs(other.mBlobs) {}

Blobs::Blobs(Blobs&& other) noexcept : VisualFeatures(other), mBlobs(std::exchange(other.mBlobs, {})) {}

Blobs::~Blobs() = default;

std::size_t Blobs::dimension() const {
    return mBlobs.size();
}

Blobs& Blobs::operator=(const Blobs& other) {
    if (this == &other)
        return *this;
    // In place where no allocation can fail half way.
    if (other.mBlobs.size() <= mBlobs.capacity() &&
        std::all_of(other.mBlobs.begin(), other.mBlobs.end(), isWithoutHeap))
        mBlobs = other.mBlobs;
    else
        mBlobs = std::vector<BlobInfo>(other.mBlobs);
    return *this;
}

Blobs& Blobs::operator=(Blobs&& other) noexcept {
    if (this != &other)
        mBlobs = std::exchange(other.mBlobs, {});
    return *this;
}

void Blobs::addBlob() {
    mBlobs.emplace_back();
}

void Blobs::clear() {
    mBlobs.clear();
}

}  // namespace tarvos::core::cvdata
