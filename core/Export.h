#pragma once

/// @file
/// What the core library shows.

/// Makes a class or function of the core library visible to its users; everything else stays inside.
#define TARVOS_CORE_EXPORT __attribute__((visibility("default")))
