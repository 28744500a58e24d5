#pragma once

/// @file
/// What the math library shows.

/// Makes a class or function of the math library visible to its users; everything else stays inside.
#define TARVOS_MATH_EXPORT __attribute__((visibility("default")))
