#include "support/Allocations.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <dlfcn.h>
#include <limits>
#include <new>

namespace {

constexpr std::size_t NEVER = std::numeric_limits<std::size_t>::max();

thread_local std::size_t untilFailure = NEVER;
thread_local std::ptrdiff_t live = 0;

bool failsNow() {
    if (untilFailure == NEVER)
        return false;
    if (untilFailure-- > 0)
        return false;
    untilFailure = NEVER;
    return true;
}

}  // namespace

void failAllocationAfter(std::size_t count) {
    untilFailure = count;
}

bool noFailureHappened() {
    const bool pending = untilFailure != NEVER;
    untilFailure = NEVER;
    return pending;
}

std::ptrdiff_t liveBlocks() {
    return live;
}

void* operator new(std::size_t size) {
    void* memory = failsNow() ? nullptr : std::malloc(size != 0 ? size : 1);
    if (memory == nullptr)
        throw std::bad_alloc();
    ++live;
    return memory;
}
void operator delete(void* memory) noexcept {
    live -= memory != nullptr ? 1 : 0;
    std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    operator delete(memory);
}

extern "C" int posix_memalign(void** memory, std::size_t alignment, std::size_t size) noexcept {
    static const auto next = reinterpret_cast<decltype(&posix_memalign)>(dlsym(RTLD_NEXT, "posix_memalign"));
    return failsNow() ? ENOMEM : next(memory, alignment, size);
}
