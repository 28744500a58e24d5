#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <string>

/// What a broken contract prints: file, function and condition to the letter, around the line number.
inline testing::Matcher<const std::string&> contractLine(const std::string& file, std::string function,
                                                         const std::string& condition) {
#ifdef __clang__
    function = "";  // Clang words __PRETTY_FUNCTION__ in its own way
#endif
    return testing::AllOf(testing::ContainsRegex("tarvos_tests: " + file + ":[0-9]+: "),
                          testing::EndsWith(function + ": Assertion `" + condition + "' failed.\n"));
}

#define EXPECT_CONTRACT(statement, file, function, condition) \
    EXPECT_EXIT(statement, testing::KilledBySignal(SIGABRT), contractLine(file, function, condition))
