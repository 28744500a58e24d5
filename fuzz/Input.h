#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// Ends the process, which is how a fuzzer learns that something is wrong.
#define FUZZ_CHECK(condition) \
    ((condition) ? void()     \
                 : (std::fprintf(stderr, "%s:%d: not true: %s\n", __FILE__, __LINE__, #condition), std::abort()))

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

/// What a fuzzer makes up, byte by byte, zeros at the end.
class Input {
public:
    Input(const std::uint8_t* bytes, std::size_t size) : mNext(bytes), mEnd(bytes + size) {}

    bool isOver() const { return mNext == mEnd; }
    std::uint8_t byte() { return mNext != mEnd ? *mNext++ : std::uint8_t{0}; }
    int below(int count) { return byte() % count; }

private:
    const std::uint8_t* mNext;
    const std::uint8_t* mEnd;
};
