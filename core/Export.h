#pragma once

/// @file
/// Symbol visibility of the core library.

/// Exports a class or function of the core library; all other symbols are hidden.
#define TARVOS_CORE_EXPORT __attribute__((visibility("default")))
