#include "support/Allocations.h"

#include <cstdlib>
#include <limits>
#include <new>

namespace {

std::size_t made = 0;
std::size_t failing = std::numeric_limits<std::size_t>::max();

}  // namespace

std::size_t allocations() { return made; }

void failAllocationAfter(std::size_t count) { failing = made + count; }

void* operator new(std::size_t size) {
    void* memory = made++ != failing ? std::malloc(size != 0 ? size : 1) : nullptr;
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}
// A sanitizer brings array forms of its own, which would not come by here.
void* operator new[](std::size_t size) { return operator new(size); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }
