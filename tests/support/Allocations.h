#pragma once

#include <cstddef>

/// Allocations by `operator new` in this process so far.
std::size_t allocations();

/// Makes the allocation after the next @p count ones fail, once.
void failAllocationAfter(std::size_t count);
