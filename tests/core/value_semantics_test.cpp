/// @file
/// What holds for every class with a value, whatever it holds: see tests/support/Values.h.

#include "support/Values.h"

#include <gtest/gtest.h>

using namespace tarvos::core;
using namespace tarvos::core::cvdata;

namespace {

struct ClassNames {
    template <typename T>
    static std::string GetName(int /*index*/) {
        const std::string whole = testing::internal::GetTypeName<T>();
        return whole.substr(whole.rfind(':') + 1);
    }
};

template <typename T>
struct ValueSemantics : testing::Test, Value<T> {};

using Classes = testing::Types<Image, TiledImage, ColorGMM, ColourHist2d, Blobs, State>;
TYPED_TEST_SUITE(ValueSemantics, Classes, ClassNames);

TYPED_TEST(ValueSemantics, CopyIsDeep) {
    const TypeParam source = this->make(3);
    const Members before = this->members(source);
    TypeParam copy(source);
    EXPECT_EQ(difference(copy, before), "");
    this->change(copy, 50);
    EXPECT_EQ(difference(source, before), "") << "after a change of the copy";
}

TYPED_TEST(ValueSemantics, AssignmentIsDeepWhateverTheSizes) {
    for (const auto& [size, previous] : {std::pair{3, 3}, {1, 4}, {4, 1}}) {
        const TypeParam source = this->make(size);
        const Members before = this->members(source);
        TypeParam target = this->make(previous);
        target = source;
        EXPECT_EQ(difference(target, before), "") << "size " << size << " to " << previous;
        this->change(target, 50);
        EXPECT_EQ(difference(source, before), "")
            << "after a change of the target, size " << size << " to " << previous;
    }
}

TYPED_TEST(ValueSemantics, AssignmentFromATemporaryIsTheSame) {
    const TypeParam source = this->make(3);
    TypeParam fromNamed = this->make(2);
    TypeParam fromTemporary = this->make(2);
    fromNamed = source;
    fromTemporary = TypeParam(source);
    EXPECT_EQ(difference(fromTemporary, fromNamed), "");
}

TYPED_TEST(ValueSemantics, SelfAssignmentChangesNothing) {
    TypeParam object = this->make(3);
    const Members before = this->members(object);
    object = static_cast<const TypeParam&>(object);
    EXPECT_EQ(difference(object, before), "");
}

TYPED_TEST(ValueSemantics, WhatUsersHoldStaysAtItsAddressInAssignments) {
    for (const int size : {3, 1}) {
        TypeParam target = this->make(3);
        const void* address = this->address(target);
        const TypeParam source = this->make(size);
        target = source;
        EXPECT_EQ(this->address(target), address) << "from size " << size;
        target = TypeParam(source);
        EXPECT_EQ(this->address(target), address) << "from a temporary of size " << size;
    }
}

/// The classes that move, and that have a flag or a time stamp which copies do not take.
template <typename T>
struct Moving : ValueSemantics<T> {};

using MovingClasses = testing::Types<Image, TiledImage, ColorGMM, ColourHist2d, Blobs>;
TYPED_TEST_SUITE(Moving, MovingClasses, ClassNames);

TYPED_TEST(Moving, ConstructionTakesEverything) {
    TypeParam source = this->make(3);
    this->mark(source);
    const Members before = this->members(source);
    TypeParam moved(std::move(source));
    EXPECT_EQ(difference(moved, before), "");
    EXPECT_TRUE(this->isMarked(moved));
    source = moved;
    EXPECT_EQ(difference(source, before), "") << "assigned to what was moved from";
}

TYPED_TEST(Moving, MarkIsClearInACopyAndStaysInAnAssignment) {
    TypeParam marked = this->make(3);
    this->mark(marked);
    EXPECT_FALSE(this->isMarked(TypeParam(marked))) << "in a copy";
    TypeParam target = this->make(3);
    target = marked;
    EXPECT_FALSE(this->isMarked(target)) << "of the target";
    target = TypeParam(std::move(marked));
    EXPECT_FALSE(this->isMarked(target)) << "of the target of a temporary";
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
    static_cast<Blobs&>(derived) = Value<Blobs>::make(2);
    EXPECT_EQ(derived.assignments, 1);
}

}  // namespace
