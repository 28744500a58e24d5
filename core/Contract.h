#pragma once

#include "Export.h"

/// @file
/// Contract checks: a broken contract is a bug in the caller and stops the process, in every build type.

namespace tarvos::core {

/// Writes one line in the form of the C library's `assert` to standard error and aborts.
[[noreturn]] TARVOS_CORE_EXPORT void contractViolated(const char* condition, const char* file, unsigned int line,
                                                      const char* function) __attribute__((cold));

}  // namespace tarvos::core

/// Stops the process unless the condition holds. A message is joined to the condition as a literal:
/// `TARVOS_REQUIRE((row < rows()) && "row index is out of range")`. The diagnostic prints the condition as it reads
/// after macro expansion, which is what the second macro is for.
#define TARVOS_REQUIRE(...) TARVOS_REQUIRE_AT(__FILE__, __extension__ __PRETTY_FUNCTION__, __VA_ARGS__)
/// TARVOS_REQUIRE for a condition that is expanded already, told as broken in @p function of @p file: in a header,
/// whose
/// `__FILE__` says how it was included, and in a check that several functions share.
#define TARVOS_REQUIRE_AT(file, function, ...)             \
    (static_cast<bool>(__VA_ARGS__) ? static_cast<void>(0) \
                                    : ::tarvos::core::contractViolated(#__VA_ARGS__, file, __LINE__, function))

/// The same where the wording of the condition compares a signed with an unsigned number on purpose: both sides
/// become unsigned, so that a negative number is larger than every size.
#define TARVOS_REQUIRE_UNSIGNED(...) \
    TARVOS_REQUIRE_UNSIGNED_AT(__FILE__, __extension__ __PRETTY_FUNCTION__, __VA_ARGS__)
/// TARVOS_REQUIRE_UNSIGNED, told as broken in @p function of @p file.
#define TARVOS_REQUIRE_UNSIGNED_AT(file, function, ...)                                      \
    do {                                                                                     \
        _Pragma("GCC diagnostic push") _Pragma("GCC diagnostic ignored \"-Wsign-compare\""); \
        TARVOS_REQUIRE_AT(file, function, __VA_ARGS__);                                      \
        _Pragma("GCC diagnostic pop")                                                        \
    } while (false)
