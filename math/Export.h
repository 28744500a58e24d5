#pragma once

#if __cplusplus < 201703L
#error "Tarvos needs C++17 or newer: compile with -std=c++17"
#endif

/// @file
/// Symbol visibility of the math library.

/// Exports a class or function of the math library; all other symbols are hidden.
#define TARVOS_MATH_EXPORT __attribute__((visibility("default")))
