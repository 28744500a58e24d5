#include "core/util/Filesystem.h"

#include "core/Exception.h"

#include <filesystem>
#include <fstream>
#include <system_error>

namespace tarvos::core::util {

namespace fs = std::filesystem;

namespace {

/// Such a name would be truncated at the NUL by the system.
bool containsNul(const std::string& path) {
    return path.find('\0') != std::string::npos;
}

void requireName(const std::string& path) {
    if (containsNul(path))
        throw fs::filesystem_error("a name with a NUL byte", path, std::make_error_code(std::errc::invalid_argument));
}

/// An empty path stays empty.
fs::path absolutePath(const std::string& path) {
    return path.empty() || fs::path(path).is_absolute() ? fs::path(path) : fs::current_path() / path;
}

bool endsWith(const std::string& text, const std::string& ending) {
    return text.size() >= ending.size() && text.compare(text.size() - ending.size(), ending.size(), ending) == 0;
}

/// @p path without trailing slashes: behind a link they would denote what the link points to.
fs::path withoutSlashes(std::string path) {
    while (!path.empty() && path.back() == '/')
        path.pop_back();
    fs::path bare = path;
    if (bare.empty() || bare.filename() == "." || bare.filename() == "..")
        throw fs::filesystem_error("will not remove", path, std::make_error_code(std::errc::invalid_argument));
    return bare;
}

/// Calls @p visit with every entry of @p dir and its name.
template <typename Visit>
void forEachEntry(const std::string& dir, Visit visit) {
    const fs::path path = absolutePath(dir);
    if (dir.empty() || containsNul(dir) || !fs::exists(path))
        throw Exception("\nNot found: " + path.native());
    if (!fs::is_directory(path))
        throw Exception("\n'" + dir + "' is a file, but must be a directory.");

    for (const fs::directory_entry& entry : fs::directory_iterator(path)) {
        std::string name = entry.path().filename();
        try {
            visit(entry, name);
        } catch (const std::exception& error) {
            throw Exception(name + " " + error.what());
        }
    }
}

/// Copies to a new file, which is removed if that fails; a file that was there before is never touched.
void copyFile(const std::string& from, const std::string& to) {
    requireName(from);
    requireName(to);
    std::error_code error;
    const fs::file_status status = fs::status(from);
    std::ifstream source(fs::is_regular_file(status) ? from : "", std::ios::binary);
    if (!source.is_open() || fs::exists(fs::symlink_status(to)))
        throw fs::filesystem_error("cannot copy", from, to, std::make_error_code(std::errc::invalid_argument));
    fs::copy_file(from, to, error);
    // GCC 12 copies nothing of a file in /proc, which states no size. An insertion may stop half way without an error.
    const auto remains = [&] { return source.peek() != std::ifstream::traits_type::eof() || source.bad(); };
    if (!error && fs::is_empty(to, error) && remains()) {
        fs::permissions(to, fs::perms::owner_write, fs::perm_options::add, error);
        std::ofstream copy(to, std::ios::binary);
        if (!(copy << source.rdbuf()).flush() || remains())
            error = std::make_error_code(std::errc::io_error);
    }
    if (!error)  // without a set-user-id bit
        fs::permissions(to, status.permissions() & fs::perms::all, error);
    if (error) {
        std::error_code ignored;
        if (error != std::errc::file_exists)
            fs::remove(to, ignored);
        throw fs::filesystem_error("cannot copy", from, to, error);
    }
}

}  // namespace

bool Filesystem::mkdir(std::string path) {
    requireName(path);
    return fs::create_directory(path);
}

bool Filesystem::rm(std::string path) {
    try {
        if (containsNul(path))
            return true;
        std::error_code error;
        if (fs::is_directory(path))
            fs::remove_all(withoutSlashes(path));
        else
            fs::remove(path, error);
        if (error && error != std::errc::not_a_directory)  // below a file there is nothing to remove
            throw fs::filesystem_error("cannot remove", path, error);
    } catch (const std::exception& error) {
        throw Exception("Filesystem exception: rm(" + path + ") failed with " + error.what());
    }
    return true;
}

bool Filesystem::exists(std::string path) {
    return !containsNul(path) && fs::exists(absolutePath(path));
}

bool Filesystem::mv(std::string from, std::string to) {
    try {
        requireName(from);
        requireName(to);
        fs::rename(from, to);
    } catch (const std::exception& error) {
        throw Exception("Filesystem exception: mv(" + from + ", " + to + ") failed with " + error.what());
    }
    return exists(to);
}

bool Filesystem::cp(std::string from, std::string to) {
    try {
        copyFile(from, to);
    } catch (const std::exception&) {
        throw Exception("Filesystem exception: cp(" + from + ", " + to + ") failed. Does " + to + " already exist?");
    }
    return exists(to);
}

void Filesystem::ls(std::string dir, std::vector<std::string>& files, std::vector<std::string>& dirs) {
    forEachEntry(dir, [&](const fs::directory_entry& entry, std::string& name) {
        (entry.is_directory() ? dirs : files).push_back(std::move(name));
    });
}

std::vector<std::string> Filesystem::ls(std::string dir, std::string ext) {
    std::vector<std::string> names;
    forEachEntry(dir, [&](const fs::directory_entry& entry, std::string& name) {
        if (entry.is_regular_file() && endsWith(name, ext))
            names.push_back(std::move(name));
    });
    return names;
}

}  // namespace tarvos::core::util
