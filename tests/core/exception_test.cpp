#include "core/Exception.h"

#include <gtest/gtest.h>

using tarvos::core::Exception;

TEST(ExceptionTest, ReportsItselfOnceWhenBuilt) {
    for (const std::string message : {"disk full", "", "\nNot found: /x"}) {
        testing::internal::CaptureStderr();
        try {
            throw Exception(message);
        } catch (const std::exception& error) {
            EXPECT_EQ(error.what(), message);
        }
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "Exception Msg: " + message + "\n");
    }
}

TEST(ExceptionTest, CopiesAreSilentAndIndependent) {
    testing::internal::CaptureStderr();
    auto original = std::make_unique<Exception>("first");
    testing::internal::GetCapturedStderr();
    testing::internal::CaptureStderr();
    const Exception copy(*original);
    EXPECT_EQ(&original->whatString(), &original->whatString());
    original.reset();
    EXPECT_EQ(copy.whatString(), "first");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}
