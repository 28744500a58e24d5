#pragma once

#include <gtest/gtest.h>
#include <tarvos/core/Exception.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <sys/resource.h>

/// A new empty directory that is the current one as long as this object lives, and is removed afterwards.
class TemporaryDirectory {
public:
    TemporaryDirectory() {
        if (mkdtemp(mPath.data()) == nullptr)
            throw std::runtime_error("no temporary directory");
        std::filesystem::current_path(mPath);
    }
    ~TemporaryDirectory() {
        std::filesystem::current_path(mPrevious);
        std::filesystem::remove_all(mPath);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::string& path() const { return mPath; }

private:
    std::filesystem::path mPrevious = std::filesystem::current_path();
    std::string mPath = std::filesystem::canonical(std::filesystem::temp_directory_path()) / "tarvos-test-XXXXXX";
};

inline void writeFile(const std::string& name, const std::string& content = "") {
    std::ofstream(name, std::ios::binary) << content;
}

inline std::string contentOf(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The permissions of @p name, in octal.
inline std::string modeOf(const std::string& name) {
    std::ostringstream mode;
    mode << std::oct << static_cast<unsigned int>(std::filesystem::status(name).permissions());
    return mode.str();
}

inline std::ptrdiff_t entriesOf(const std::string& directory) {
    return std::distance(std::filesystem::directory_iterator(directory), {});
}

/// Expects @p action to report a failure, by false or by the library's exception, in a process of its own, whose files
/// have at most 100 bytes.
inline void expectFailureOnAFullDisk(const std::string& name, const std::function<bool()>& action) {
    const auto run = [&] {
        const rlimit limits{100, 100};
        std::signal(SIGXFSZ, SIG_IGN);
        setrlimit(RLIMIT_FSIZE, &limits);
        try {
            std::_Exit(action() ? 1 : 0);
        } catch (const tarvos::core::Exception&) {
            std::_Exit(0);
        } catch (const std::exception& error) {
            std::cerr << "another exception: " << error.what() << std::endl;
            std::_Exit(2);
        }
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "") << name;
}
