/// @file
/// What the library costs a process: its start, its memory, file operations.

#include "Comparison.h"

#include <tarvos/core/util/Filesystem.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <vector>

extern char** environ;

namespace {

using comparison::compare;
using tarvos::core::util::Filesystem;
namespace fs = std::filesystem;

/// Runs @p program to its end; its resident memory in bytes.
double runToItsEnd(const std::string& program) {
    std::string name = program;
    char* arguments[] = {name.data(), nullptr};
    pid_t child = 0;
    int status = 0;
    rusage usage{};
    if (posix_spawn(&child, program.c_str(), nullptr, nullptr, arguments, environ) != 0 ||
        wait4(child, &status, 0, &usage) != child || status != 0)
        std::abort();
    return 1024.0 * static_cast<double>(usage.ru_maxrss);
}

void addStart() {
    const std::string ours = START_TARVOS;
    const std::string peer = START_OPENCV;
    compare(
        "start of a program", "with OpenCV core alone", 1.5, [ours] { runToItsEnd(ours); },
        [peer] { runToItsEnd(peer); });
    const comparison::Row memory{"its resident memory", "the same", 1.5};
    comparison::add(memory);
    for (int i = 0; i < 30; ++i) {
        comparison::tell(memory, "ours", runToItsEnd(ours));
        comparison::tell(memory, "peer", runToItsEnd(peer));
    }
}

void addListing(const fs::path& directory) {
    const std::string many = directory / "many";
    fs::create_directory(many);
    for (int i = 0; i < 10000; ++i)
        std::ofstream(many + "/entry" + std::to_string(i) + (i % 3 == 0 ? ".png" : ".txt"));
    compare(
        "Filesystem::ls, 10000 entries", "std::filesystem", 1.05,
        [many] {
            std::vector<std::string> files;
            std::vector<std::string> dirs;
            Filesystem::ls(many, files, dirs);
            benchmark::DoNotOptimize(files.data());
        },
        [many] {
            std::vector<std::string> files;
            std::vector<std::string> dirs;
            for (const fs::directory_entry& entry : fs::directory_iterator(many))
                (entry.is_directory() ? dirs : files).push_back(entry.path().filename().string());
            benchmark::DoNotOptimize(files.data());
        });
    compare(
        "Filesystem::ls by ending, 10000", "std::filesystem", 1.05,
        [many] { benchmark::DoNotOptimize(Filesystem::ls(many, ".png").data()); },
        [many] {
            std::vector<std::string> names;
            for (const fs::directory_entry& entry : fs::directory_iterator(many))
                if (entry.is_regular_file() && entry.path().extension() == ".png")
                    names.push_back(entry.path().filename().string());
            benchmark::DoNotOptimize(names.data());
        });
}

void addCopy(const fs::path& directory) {
    const std::string from = directory / "large";
    std::ofstream(from, std::ios::binary) << std::string(64 << 20, 'x');
    const auto row = [&](auto copy) {
        return [=, to = directory / "copy"] {
            copy(from, to);
            fs::remove(to);
        };
    };
    compare("Filesystem::cp, 64 MB", "std::filesystem::copy_file", 1.05,
            row([](const std::string& source, const std::string& target) { Filesystem::cp(source, target); }),
            row([](const std::string& source, const std::string& target) { fs::copy_file(source, target); }));
}

}  // namespace

int main(int argc, char** argv) {
    std::string name = (fs::temp_directory_path() / "tarvos-benchmark-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
        return 1;
    addStart();
    addListing(name);
    addCopy(name);
    const int status = comparison::run(argc, argv);
    fs::remove_all(name);
    return status;
}
