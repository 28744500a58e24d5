#pragma once

#include <benchmark/benchmark.h>

#include <string>

/// Registers an operation of the library and the same done by a @p peer; scripts/bench prints the two in one row. Both
/// return what they made, so that the compiler cannot leave it out.
template <typename Ours, typename Theirs>
void compare(const std::string& operation, const std::string& peer, Ours ours, Theirs theirs) {
    const auto loop = [](auto work) {
        return [work](benchmark::State& state) mutable {
            for ([[maybe_unused]] auto iteration : state) {
                auto result = work();
                benchmark::DoNotOptimize(result);
                benchmark::ClobberMemory();
            }
        };
    };
    benchmark::RegisterBenchmark((operation + "|tarvos").c_str(), loop(ours));
    benchmark::RegisterBenchmark((operation + "|" + peer).c_str(), loop(theirs));
}
