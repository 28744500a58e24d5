#include "core/cvdata/features/Blobs.h"

#include "support/Poses.h"

#include <gtest/gtest.h>

#include <new>
#include <tuple>

using tarvos::core::cvdata::Blobs;

namespace {

auto contentOf(const Blobs::BlobInfo& blob) {
    return std::tuple(blob.mValues, blob.mField1, blob.mField2, blob.mBlock, blob.mMatrix1.data()[3],
                      blob.mMatrix1.rows(), blob.mMatrix2.rows(), elementsOf(blob.mVector));
}

Blobs listOf(int count) {
    Blobs blobs;
    for (int i = 1; i <= count; ++i) {
        blobs.addBlob();
        Blobs::BlobInfo& blob = blobs.mBlobs.back();
        blob.mValues.fill(0.5 * i);
        blob.mBlock.fill(blob.mField1 = blob.mField2 = i);
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
    EXPECT_EQ(contentOf(*blob), contentOf(Blobs::BlobInfo()));
    EXPECT_EQ(blob->mField1 | blob->mField2 | blob->mBlock[3], 0);
    blob->~BlobInfo();
}

TEST(BlobsTest, CopiesEveryMemberOfEveryRecord) {
    for (const int from : {0, 1, 3}) {
        const Blobs source = listOf(from);
        for (const int to : {0, 1, 3}) {
            Blobs target = listOf(to);
            target.mFlag = true;
            target = source;
            target = static_cast<const Blobs&>(target);
            EXPECT_TRUE(target.mFlag);
            EXPECT_FALSE(Blobs(target).mFlag);
            ASSERT_EQ(Blobs(target).dimension(), source.dimension());
            for (std::size_t i = 0; i < source.dimension(); ++i)
                EXPECT_EQ(contentOf(Blobs(target).mBlobs[i]), contentOf(source.mBlobs[i]));
            target.clear();
            target.addBlob();
            EXPECT_EQ(target.dimension(), 1U);
        }
    }
}

}  // namespace
