#pragma once

#include <cstddef>

/// Makes the allocation of this thread after the next @p count ones fail, once: by `operator new`, or by the
/// `posix_memalign` of OpenCV.
void failAllocationAfter(std::size_t count);

/// Takes the failure back; whether it was still to come.
bool noFailureHappened();

/// Blocks from `operator new` that this thread has not given back.
std::ptrdiff_t liveBlocks();
