/// @file
/// What the library costs a program that starts, beside one that links OpenCV's core alone.

#include <benchmark/benchmark.h>

#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>

extern char** environ;

namespace {

/// Runs @p program to its end, over and over; the counter is its resident memory in MB.
void start(benchmark::State& state, std::string program) {
    char* arguments[] = {program.data(), nullptr};
    for ([[maybe_unused]] auto iteration : state) {
        pid_t child = 0;
        int status = 0;
        rusage usage{};
        if (posix_spawn(&child, program.c_str(), nullptr, nullptr, arguments, environ) != 0 ||
            wait4(child, &status, 0, &usage) != child || status != 0)
            state.SkipWithError("the program does not run");
        state.counters["MB"] = static_cast<double>(usage.ru_maxrss) / 1024.0;
    }
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::RegisterBenchmark("start of a program|tarvos", start, START_TARVOS)->UseRealTime();
    benchmark::RegisterBenchmark("start of a program|OpenCV's core alone", start, START_OPENCV)->UseRealTime();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
