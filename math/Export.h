#pragma once

/// @file
/// Symbol visibility of the math library.

/// Exports a class or function of the math library; all other symbols are hidden.
#define TARVOS_MATH_EXPORT __attribute__((visibility("default")))
