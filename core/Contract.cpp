#include <tarvos/core/Contract.h>

// glibc's own reporter gives the line's form, flushes and aborts. It declares __assert_fail only without NDEBUG.
#undef NDEBUG
#include <cassert>

namespace tarvos::core {

void contractViolated(const char* condition, const char* file, unsigned int line, const char* function) {
    __assert_fail(condition, file, line, function);
}

}  // namespace tarvos::core
