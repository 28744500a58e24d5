#include "Comparison.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iostream>
#include <map>
#include <string>
#include <vector>

namespace comparison {

namespace {

std::vector<Row> rows;
/// The fastest round of each side of each row, and the unit.
std::map<std::string, double> fastest;

void keepFastest(const std::string& name, double number) {
    const auto [kept, isNew] = fastest.try_emplace(name, number);
    if (!isNew)
        kept->second = std::min(kept->second, number);
}

/// Keeps the fastest rounds and prints nothing.
class Fastest : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context& /*context*/) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Iteration && !run.error_occurred)
                keepFastest(run.run_name.function_name,
                            run.real_accumulated_time / static_cast<double>(run.iterations));
    }
};

std::string text(double number) {
    static const std::array<std::pair<double, const char*>, 4> UNITS{
        {{1.0, "s"}, {1e-3, "ms"}, {1e-6, "us"}, {1e-9, "ns"}}};
    if (number >= 1e3)  // no time, but a size
        return std::to_string(static_cast<long>(number / 1e6)) + " MB";
    char buffer[32] = "-";
    for (const auto& [unit, name] : UNITS) {
        if (number >= unit || unit == 1e-9) {
            std::snprintf(buffer, sizeof buffer, "%.3g %s", number / unit, name);
            break;
        }
    }
    return buffer;
}

std::string side(const Row& row, const char* name) {
    const auto found = fastest.find(nameOf(row, name));
    return found == fastest.end() ? "" : text(found->second);
}

void printRow(const std::string& operation, const std::string& ours, const std::string& peerName,
              const std::string& peer, const std::string& limit, const std::string& ratio, const std::string& goal) {
    std::printf("| %-38s | %7s | %-26s | %7s | %7s | %5s | %11s |\n", operation.c_str(), ours.c_str(), peerName.c_str(),
                peer.c_str(), limit.c_str(), ratio.c_str(), goal.c_str());
}

std::string withTwoDigits(double number) {
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%.2f", number);
    return buffer;
}

void printTable() {
    printRow("operation", "ours", "peer", "peer's", "limit", "ratio", "goal");
    printRow("---", "---", "---", "---", "---", "---", "---");
    for (const Row& row : rows) {
        const auto ours = fastest.find(nameOf(row, "ours"));
        const auto peer = fastest.find(nameOf(row, "peer"));
        if (ours == fastest.end() || peer == fastest.end())
            continue;  // filtered out
        const double ratio = ours->second / peer->second;
        const std::string goal = row.goal > 0.0 ? "<= " + withTwoDigits(row.goal) : "";
        printRow(row.operation, side(row, "ours"), row.peer, side(row, "peer"), side(row, "limit"),
                 withTwoDigits(ratio), row.goal > 0.0 && ratio > row.goal ? goal + " !" : goal);
    }
}

}  // namespace

void add(const Row& row) {
    rows.push_back(row);
}

void tell(const Row& row, const char* side, double number) {
    keepFastest(nameOf(row, side), number);
}

int run(int argc, char** argv) {
    std::string interleaved = "--benchmark_enable_random_interleaving=true";
    std::string repetitions = "--benchmark_repetitions=11";
    std::string time = "--benchmark_min_time=0.01";
    std::vector<char*> arguments{argv[0], interleaved.data(), repetitions.data(), time.data()};
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return 1;
    Fastest reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    printTable();
    return 0;
}

}  // namespace comparison
