#pragma once

#include <tarvos/math/Export.h>

/// @file
/// Symbol visibility of the core library and of those above it.

/// Exports a class or function; all other symbols are hidden.
#define TARVOS_CORE_EXPORT __attribute__((visibility("default")))
