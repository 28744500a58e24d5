#pragma once

#if __cplusplus < 201703L
#error "Tarvos needs C++17 or newer: compile with -std=c++17"
#endif

/// @file
/// Symbol visibility of the core library and of those above it.

/// Exports a class or function; all other symbols are hidden.
#define TARVOS_CORE_EXPORT __attribute__((visibility("default")))
