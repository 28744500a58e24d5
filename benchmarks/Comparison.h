#pragma once

#include <benchmark/benchmark.h>

#include <string>
#include <utility>

/// Pairs of programs that do the same thing, measured interleaved in one run and told in a table.
namespace comparison {

/// What a row of the table compares, in seconds or in whatever `measure` returned, and the ratio that is wanted.
struct Row {
    std::string operation;
    std::string peer;
    double goal;  ///< the most that ours / peer's may be; 0 for none
};

/// Adds a row. Rows come in the order in which they are added.
void add(const Row& row);

/// Tells a number that was measured without the help of Google Benchmark; @p side is "ours", "peer" or "limit".
void tell(const Row& row, const char* side, double number);

inline std::string nameOf(const Row& row, const char* side) {
    return row.operation + "|" + row.peer + "|" + side;
}

/// Measures @p work, an object that is called once for each iteration, as one side of @p row.
template <typename Work>
benchmark::internal::Benchmark* measure(const Row& row, const char* side, Work work) {
    return benchmark::RegisterBenchmark(nameOf(row, side).c_str(),
                                        [work](benchmark::State& state) {
                                            Work once = work;
                                            Work* escaped = &once;
                                            benchmark::DoNotOptimize(escaped);  // what it holds may be read elsewhere
                                            for (auto _ : state) {
                                                once();
                                                benchmark::ClobberMemory();
                                            }
                                        })
        ->UseRealTime();
}

/// A row of ours beside a peer.
template <typename Ours, typename Peer>
void compare(const std::string& operation, const std::string& peerName, double goal, Ours ours, Peer peer) {
    const Row row{operation, peerName, goal};
    add(row);
    measure(row, "ours", std::move(ours));
    measure(row, "peer", std::move(peer));
}

/// The same with the least that any program would have to do.
template <typename Ours, typename Peer, typename Limit>
void compare(const std::string& operation, const std::string& peerName, double goal, Ours ours, Peer peer,
             Limit limit) {
    compare(operation, peerName, goal, std::move(ours), std::move(peer));
    measure({operation, peerName, goal}, "limit", std::move(limit));
}

/// Runs what was added and prints the table. Further arguments go to Google Benchmark.
int run(int argc, char** argv);

}  // namespace comparison
