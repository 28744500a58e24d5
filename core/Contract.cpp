#include <tarvos/core/Contract.h>

// The C library's own reporter gives the form of the line, flushes and aborts. It is declared only where assertions
// are on, and defined always.
#undef NDEBUG
#include <cassert>

namespace tarvos::core {

void contractViolated(const char* condition, const char* file, unsigned int line, const char* function) {
    __assert_fail(condition, file, line, function);
}

}  // namespace tarvos::core
