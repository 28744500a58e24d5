#pragma once

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>

inline std::string contentOf(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline std::ptrdiff_t entriesOf(const std::string& directory) {
    return std::distance(std::filesystem::directory_iterator(directory), {});
}

/// What a program did: its exit status and what it wrote to its two streams.
struct ProgramRun {
    int status;
    std::string output, errors;

    /// Runs the shell's @p command in the current directory.
    static ProgramRun of(const std::string& command) {
        const int status = std::system((command + " >.output 2>.errors").c_str());
        if (!WIFEXITED(status))
            throw std::runtime_error(command + " was killed");
        return {WEXITSTATUS(status), contentOf(".output"), contentOf(".errors")};
    }
};

/// Runs @p action in a process of its own, where @p resource is limited.
inline void expectInLimits(__rlimit_resource resource, rlim_t limit, const std::function<void()>& action) {
    const auto run = [&] {
        const rlimit limits{limit, limit};
        std::signal(SIGXFSZ, SIG_IGN);
        setrlimit(resource, &limits);
        action();
        std::_Exit(testing::Test::HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
}
