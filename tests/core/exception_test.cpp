#include "core/Exception.h"

#include <gtest/gtest.h>

using tarvos::core::Exception;

TEST(ExceptionTest, ReportsItselfOnceWhenBuiltAndNotWhenCopied) {
    for (const std::string message : {"disk full", "", "\nNot found: /x"}) {
        testing::internal::CaptureStderr();
        auto original = std::make_unique<Exception>(message);
        const Exception copy(*original);
        original.reset();
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "Exception Msg: " + message + "\n");
        EXPECT_EQ(copy.what(), message);
        EXPECT_EQ(copy.whatString(), message);
    }
}
