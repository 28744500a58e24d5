#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
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

/// The line of a broken contract: of the function, as in "Image::clone", which stands in a file of its class's name.
inline testing::Matcher<const std::string&> contractLine(const std::string& function, const std::string& condition) {
    const std::string file = "core/[a-z/]*" + function.substr(0, function.find(':')) + "\\.(cpp|h)";
    return testing::AllOf(
        testing::ContainsRegex("^tarvos_tests: " + file + ":[0-9]+: [^\n]*::" + function + "\\([^\n]*\\)( const)?: "),
        testing::EndsWith(": Assertion `" + condition + "' failed.\n"));
}

#define EXPECT_CONTRACT(statement, function, condition) \
    EXPECT_EXIT(statement, testing::KilledBySignal(SIGABRT), contractLine(function, condition))
