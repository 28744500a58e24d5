#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

/// A new empty directory that is the current one as long as this object lives, and is removed afterwards.
class TemporaryDirectory {
public:
    TemporaryDirectory() {
        std::string path = (std::filesystem::temp_directory_path() / "tarvos-test-XXXXXX").string();
        if (mkdtemp(path.data()) == nullptr)
            throw std::runtime_error("no temporary directory");
        mPath = std::filesystem::canonical(path);
        std::filesystem::current_path(mPath);
    }
    ~TemporaryDirectory() {
        std::filesystem::current_path(mPrevious);
        std::filesystem::remove_all(mPath);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    std::string path() const { return mPath.string(); }
    static void write(const std::string& name, const std::string& text = "") {
        std::ofstream(name, std::ios::binary) << text;
    }

private:
    std::filesystem::path mPrevious = std::filesystem::current_path();
    std::filesystem::path mPath;
};
