#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

/// What @p action writes to standard error.
template <typename Action>
std::string captureStderr(Action action) {
    testing::internal::CaptureStderr();
    action();
    return testing::internal::GetCapturedStderr();
}

/// What @p action writes to standard output.
template <typename Action>
std::string captureStdout(Action action) {
    testing::internal::CaptureStdout();
    action();
    return testing::internal::GetCapturedStdout();
}
