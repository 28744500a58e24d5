#include "core/cvdata/features/Blobs.h"

#include "support/Poses.h"

#include <gmock/gmock.h>

#include <new>
#include <tuple>

using tarvos::core::cvdata::Blobs;

namespace {

auto contentOf(const Blobs::BlobInfo& blob) {
    return std::tuple(blob.mValues, blob.mField1, blob.mField2, blob.mBlock, elementsOf(blob.mMatrix1),
                      elementsOf(blob.mMatrix2), elementsOf(blob.mVector));
}

Blobs listOf(int count) {
    Blobs blobs;
    for (int i = 1; i <= count; ++i) {
        blobs.addBlob();
        Blobs::BlobInfo& blob = blobs.mBlobs.back();
        blob.mValues.fill(0.5 * i);
        blob.mBlock.fill(blob.mField1 = i);
        blob.mField2 = -i;
        blob.mMatrix1.fill(2.0 * i);
        blob.mMatrix2 = tarvos::math::SquareMatrix(3);
        blob.mVector.fill(4.0 * i);
    }
    return blobs;
}

TEST(BlobsTest, NewRecordsAreZeroWhateverTheMemoryHeld) {
    alignas(Blobs::BlobInfo) unsigned char memory[sizeof(Blobs::BlobInfo)];
    std::fill(std::begin(memory), std::end(memory), static_cast<unsigned char>(0xA5));
    auto* blob = new (memory) Blobs::BlobInfo;
    EXPECT_EQ(contentOf(*blob), std::tuple(std::array<double, 5>{}, 0, 0, std::array<std::int32_t, 4>{},
                                           std::vector<double>(4), std::vector<double>(4), std::vector<double>(2)));
    blob->~BlobInfo();
}

TEST(BlobsTest, CopiesEveryMemberOfEveryRecord) {
    for (const auto& [from, to] : {std::pair(0, 3), {1, 0}, {3, 1}, {3, 3}}) {
        const Blobs source = listOf(from);
        Blobs target = listOf(to);
        target = source;
        target = static_cast<const Blobs&>(target);
        ASSERT_EQ(target.dimension(), source.dimension());
        const Blobs copy(target);
        for (std::size_t i = 0; i < source.dimension(); ++i) {
            EXPECT_EQ(contentOf(target.mBlobs[i]), contentOf(source.mBlobs[i]));
            EXPECT_EQ(contentOf(copy.mBlobs[i]), contentOf(source.mBlobs[i]));
        }
        target.clear();
        target.addBlob();
        EXPECT_EQ(target.dimension(), 1U);
    }
}

}  // namespace
