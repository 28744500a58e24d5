/// @file
/// What holds for every class with a value: see tests/support/Values.h.

#include "support/Values.h"

#include <gtest/gtest.h>

#include <utility>

using namespace values;

namespace {

template <typename T>
struct ValueSemantics : testing::Test {};
using Classes = testing::Types<Image, TiledImage, GM, ColorGMM, ColourHist2d, Blobs, State>;
TYPED_TEST_SUITE(ValueSemantics, Classes, );  // Clang misses an argument without the comma

TYPED_TEST(ValueSemantics, AssignmentIsDeepWhateverTheSizes) {
    for (const auto& [size, previous] : {std::pair{3, 3}, {1, 4}, {4, 1}}) {
        const TypeParam source = makeChanged<TypeParam>(size);
        const Members before = members(source);
        TypeParam target = makeChanged<TypeParam>(previous);
        target = source;
        ASSERT_EQ(difference(target, before), "") << "source of size " << size << ", target of " << previous;
        target = makeChanged<TypeParam>(previous);
        target = TypeParam(source);
        ASSERT_EQ(difference(target, before), "") << "a temporary of size " << size << ", target of " << previous;
        change(target, 50);
        ASSERT_EQ(difference(source, before), "") << "changed with the target, sizes " << size << " and " << previous;
    }
}

struct DerivedBlobs : Blobs {
    using Blobs::operator=;
    Blobs& operator=(const Blobs& other) override {
        ++assignments;
        return Blobs::operator=(other);
    }
    int assignments = 0;
};

TEST(VirtualAssignment, OfADerivedClassIsCalledForTemporariesToo) {
    DerivedBlobs derived;
    static_cast<Blobs&>(derived) = makeChanged<Blobs>(2);
    EXPECT_EQ(derived.assignments, 1);
}

}  // namespace
