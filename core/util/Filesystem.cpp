#include "core/util/Filesystem.h"

#include "core/Exception.h"

#include <boost/filesystem.hpp>

namespace tarvos::core::util {

namespace fs = boost::filesystem;

namespace {

bool endsWith(const std::string& text, const std::string& ending) {
    return text.size() >= ending.size() && text.compare(text.size() - ending.size(), ending.size(), ending) == 0;
}

/// Calls @p visit with the path and the name of every entry of @p dir.
template <typename Visit>
void forEachEntry(const std::string& dir, Visit visit) {
    const fs::path completed = fs::system_complete(dir);
    if (dir.empty() || !fs::exists(completed))
        throw Exception("\nNot found: " + completed.native());
    if (!fs::is_directory(completed))
        throw Exception("\n'" + dir + "' is a file, but must be a directory.");

    for (const fs::directory_entry& entry : fs::directory_iterator(completed)) {
        const std::string name = entry.path().filename().native();
        try {
            visit(entry.path(), name);
        } catch (const std::exception& error) {
            throw Exception(name + " " + error.what());
        }
    }
}

}  // namespace

bool Filesystem::mkdir(std::string path) {
    return fs::create_directory(path);
}

bool Filesystem::rm(std::string path) {
    try {
        if (fs::is_directory(path))
            fs::remove_all(path);
        fs::remove(path);
    } catch (const std::exception& error) {
        throw Exception("Filesystem exception: rm(" + path + ") failed with " + error.what());
    }
    return true;
}

bool Filesystem::exists(std::string path) {
    return fs::exists(fs::system_complete(path));
}

bool Filesystem::mv(std::string from, std::string to) {
    try {
        fs::rename(from, to);
    } catch (const std::exception& error) {
        throw Exception("Filesystem exception: mv(" + from + ", " + to + ") failed with " + error.what());
    }
    return exists(to);
}

bool Filesystem::cp(std::string from, std::string to) {
    try {
        fs::copy_file(from, to);
    } catch (const std::exception&) {
        throw Exception("Filesystem exception: cp(" + from + ", " + to + ") failed. Does " + to + " already exist?");
    }
    return exists(to);
}

void Filesystem::ls(std::string dir, std::vector<std::string>& files, std::vector<std::string>& dirs) {
    forEachEntry(dir, [&](const fs::path& path, const std::string& name) {
        (fs::is_directory(path) ? dirs : files).push_back(name);
    });
}

std::vector<std::string> Filesystem::ls(std::string dir, std::string ext) {
    std::vector<std::string> names;
    forEachEntry(dir, [&](const fs::path& path, const std::string& name) {
        if (fs::is_regular_file(path) && endsWith(name, ext))
            names.push_back(name);
    });
    return names;
}

}  // namespace tarvos::core::util
