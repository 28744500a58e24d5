#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

/// Fuzzer input byte by byte; 0 past the end. It keeps a list of the operations that the input led to.
class Input {
public:
    Input(const std::uint8_t* bytes, std::size_t size) : mNext(bytes), mEnd(bytes + size) { operations().clear(); }

    bool atEnd() const { return mNext == mEnd; }
    std::uint8_t byte() { return mNext != mEnd ? *mNext++ : std::uint8_t{0}; }
    int below(int count) { return byte() % count; }

    /// Adds a line to the operations.
    template <typename... Parts>
    static void note(const Parts&... parts) {
        std::ostringstream line;
        ((line << parts), ...);
        operations() += line.str() + "\n";
    }
    static std::string& operations() {
        static std::string lines;
        return lines;
    }

private:
    const std::uint8_t* mNext;
    const std::uint8_t* mEnd;
};

/// Prints what is not true after which operations and exits, which is how a fuzzer learns of it.
#define FUZZ_CHECK(condition)                                                                              \
    ((condition) ? void()                                                                                  \
                 : (void(std::cerr << __FILE__ << ":" << __LINE__ << ": not true: " #condition "\nafter\n" \
                                   << Input::operations()),                                                \
                    std::abort()))
