#pragma once

#include <tarvos/core/Export.h>

#include <string>

/// @file
/// Contract checks: a broken contract is a bug in the caller and aborts, in every build type.

namespace tarvos::core {

/// Writes one line in the form of the C library's `assert` to standard error and aborts.
[[noreturn]] TARVOS_CORE_EXPORT void contractViolated(const char* condition, const char* file, unsigned int line,
                                                      const char* function) __attribute__((cold));

}  // namespace tarvos::core

/// Aborts unless the condition holds. A message is joined to the condition as a literal:
/// `TARVOS_REQUIRE((row < rows()) && "row index is out of range")`. The diagnostic prints the condition as it reads
/// after macro expansion, hence the next macro.
#define TARVOS_REQUIRE(...) TARVOS_REQUIRE_EXPANDED(__VA_ARGS__)
#define TARVOS_REQUIRE_EXPANDED(...) TARVOS_REQUIRE_OR(#__VA_ARGS__, __VA_ARGS__)
/// TARVOS_REQUIRE whose diagnostic ends with @p details, a string that is only composed for it.
#define TARVOS_REQUIRE_WITH(details, ...) TARVOS_REQUIRE_OR((#__VA_ARGS__ " " + (details)).c_str(), __VA_ARGS__)
#define TARVOS_REQUIRE_OR(text, ...) \
    (static_cast<bool>(__VA_ARGS__)  \
         ? static_cast<void>(0)      \
         : ::tarvos::core::contractViolated(text, __FILE__, __LINE__, __extension__ __PRETTY_FUNCTION__))
