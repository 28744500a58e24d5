#include "core/util/Filesystem.h"

#include "core/Exception.h"
#include "core/RegularFile.h"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/sendfile.h>
#include <system_error>
#include <unistd.h>

namespace tarvos::core::util {

namespace fs = std::filesystem;

namespace {

/// Such a name cannot be put to the system, which would take it for the name before the NUL byte.
bool isName(const std::string& path) {
    return path.find('\0') == std::string::npos;
}

void requireName(const std::string& path) {
    if (!isName(path))
        throw fs::filesystem_error("a name with a NUL byte", path, std::make_error_code(std::errc::invalid_argument));
}

/// A relative path prefixed with the current directory.
fs::path completed(const std::string& path) {
    return path.empty() || fs::path(path).is_absolute() ? fs::path(path) : fs::current_path() / path;
}

bool endsWith(const std::string& text, const std::string& ending) {
    return text.size() >= ending.size() && text.compare(text.size() - ending.size(), ending.size(), ending) == 0;
}

/// The directory that @p path names, without slashes at its end: behind a link they would stand for what the link
/// points to.
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
    const fs::path path = completed(dir);
    if (dir.empty() || !isName(dir) || !fs::exists(path))
        throw Exception("\nNot found: " + path.native());
    if (!fs::is_directory(path))
        throw Exception("\n'" + dir + "' is a file, but must be a directory.");

    for (const fs::directory_entry& entry : fs::directory_iterator(path)) {
        const std::string& whole = entry.path().native();
        std::string name = whole.substr(whole.rfind('/') + 1);
        try {
            visit(entry, name);
        } catch (const std::exception& error) {
            throw Exception(name + " " + error.what());
        }
    }
}

/// Copies what is left of @p from, in the kernel as far as that goes.
bool copyContent(int from, int to) {
    constexpr std::size_t MOST = std::size_t{1} << 30;
    while (sendfile(to, from, nullptr, MOST) > 0) {
    }
    // Some files (in /proc, say) say nothing of their size or cannot be sent; at the end of others, nothing is read.
    char chunk[1 << 16];
    ssize_t count = 0;
    while ((count = readBytes(from, chunk, sizeof chunk)) > 0)
        if (!writeBytes(to, chunk, static_cast<std::size_t>(count)))
            return false;
    return count == 0;
}

void copyFile(const std::string& from, const std::string& to) {
    requireName(to);
    struct stat status {};
    const Descriptor source = openRegularFile(from, status);
    const mode_t permissions = status.st_mode & 0777;  // of set-user-id and its like nothing is copied
    Descriptor target(source ? open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, permissions) : -1);
    if (!target)
        throw std::system_error(errno, std::generic_category());
    if (!copyContent(source.get(), target.get()) || fchmod(target.get(), permissions) != 0 || !target.close()) {
        const int error = errno;
        unlink(to.c_str());
        throw std::system_error(error, std::generic_category());
    }
}

}  // namespace

bool Filesystem::mkdir(std::string path) {
    requireName(path);
    return fs::create_directory(path);
}

bool Filesystem::rm(std::string path) {
    try {
        if (!isName(path))
            return true;
        if (fs::is_directory(path))
            fs::remove_all(withoutSlashes(path));
        else
            fs::remove(path);
    } catch (const std::exception& error) {
        throw Exception("Filesystem exception: rm(" + path + ") failed with " + error.what());
    }
    return true;
}

bool Filesystem::exists(std::string path) {
    return isName(path) && fs::exists(completed(path));
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
