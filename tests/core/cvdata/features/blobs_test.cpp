#include "core/cvdata/features/Blobs.h"

#include "support/Poses.h"

#include <gtest/gtest.h>

#include <new>

using namespace tarvos::core::cvdata;

namespace {

Blobs listOf(int count) {
    Blobs blobs;
    for (int i = 1; i <= count; ++i) {
        blobs.addBlob();
        Blobs::BlobInfo& blob = blobs.mBlobs.back();
        blob.mValues.fill(0.5 * i);
        blob.mField1 = i;
        blob.mField2 = -i;
        blob.mBlock.fill(10 * i);
        blob.mMatrix1.fill(2.0 * i);
        blob.mMatrix2 = tarvos::math::SquareMatrix(3);
        blob.mVector.fill(4.0 * i);
    }
    return blobs;
}

void expectEqual(const Blobs& actual, const Blobs& expected) {
    ASSERT_EQ(actual.dimension(), expected.dimension());
    for (std::size_t i = 0; i < actual.dimension(); ++i) {
        const Blobs::BlobInfo& a = actual.mBlobs[i];
        const Blobs::BlobInfo& b = expected.mBlobs[i];
        EXPECT_EQ(a.mValues, b.mValues);
        EXPECT_EQ(a.mField1, b.mField1);
        EXPECT_EQ(a.mField2, b.mField2);
        EXPECT_EQ(a.mBlock, b.mBlock);
        EXPECT_EQ(a.mMatrix1(1, 1), b.mMatrix1(1, 1));
        EXPECT_EQ(a.mMatrix2.rows(), b.mMatrix2.rows());
        EXPECT_EQ(elementsOf(a.mVector), elementsOf(b.mVector));
    }
}

TEST(BlobsTest, NewRecordsAreZero) {
    alignas(Blobs::BlobInfo) unsigned char memory[sizeof(Blobs::BlobInfo)];
    std::fill(std::begin(memory), std::end(memory), static_cast<unsigned char>(0xA5));
    auto* blob = new (memory) Blobs::BlobInfo;
    EXPECT_EQ(blob->mValues, (std::array<double, 5>{}));
    EXPECT_EQ(blob->mField1 | blob->mField2, 0);
    EXPECT_EQ(blob->mBlock, (std::array<std::int32_t, 4>{}));
    for (const tarvos::math::SquareMatrix* matrix : {&blob->mMatrix1, &blob->mMatrix2}) {
        EXPECT_EQ(matrix->rows(), 2U);
        EXPECT_EQ((*matrix)(0, 1), 0.0);
    }
    EXPECT_EQ(elementsOf(blob->mVector), (std::vector<double>{0, 0}));
    blob->~BlobInfo();
    static_assert(sizeof(Blobs::BlobInfo::mBlock) == 16);
}

TEST(BlobsTest, GrowsAndShrinks) {
    Blobs blobs = listOf(2);
    EXPECT_EQ(blobs.type(), 0x4000001D);
    EXPECT_EQ(blobs.dimension(), 2U);
    blobs.clear();
    EXPECT_EQ(blobs.dimension(), 0U);
    blobs.addBlob();
    EXPECT_EQ(blobs.dimension(), 1U);
}

TEST(BlobsTest, CopiesEveryMember) {
    for (const int from : {0, 1, 3}) {
        const Blobs source = listOf(from);
        for (const int to : {0, 1, 3}) {
            Blobs target = listOf(to);
            target.mFlag = true;
            target = source;
            expectEqual(target, source);
            EXPECT_TRUE(target.mFlag);
            const Blobs& alias = target;
            target = alias;
            expectEqual(target, source);
            expectEqual(Blobs(target), source);
            EXPECT_FALSE(Blobs(target).mFlag);
        }
    }
}

}  // namespace
