#include <tarvos/core/Exception.h>
#include <tarvos/core/FileDescriptor.h>
#include <tarvos/core/util/Filesystem.h>

#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

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

/// @p path from the root, for a message; unchanged where the current directory has no name.
std::string absoluteText(const std::string& path) {
    std::error_code error;
    const fs::path current = path.empty() ? fs::path() : fs::current_path(error);
    return error ? path : (current / path).native();
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
    if (dir.empty() || containsNul(dir) || !fs::exists(dir))
        throw Exception("\nNot found: " + absoluteText(dir));
    if (!fs::is_directory(dir))
        throw Exception("\n'" + dir + "' is a file, but must be a directory.");

    for (const fs::directory_entry& entry : fs::directory_iterator(dir)) {
        std::string name = entry.path().filename();
        try {
            visit(entry, name);
        } catch (const std::exception& error) {
            throw Exception(name + " " + error.what());
        }
    }
}

/// Copies a regular file to a new one, which is removed on failure; all allocations come before it exists. Written
/// here because libstdc++'s copy_file has reported success for cut copies, and failure for complete ones.
bool copyFile(const fs::path& from, const fs::path& to) {
    constexpr std::size_t CHUNK = 1 << 18;
    const std::unique_ptr<char[]> bytes(new char[CHUNK]);
    // Asked before the file is opened, since opening a device may do something.
    const FileDescriptor source(fs::is_regular_file(from) ? open(from.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK) : -1);
    struct stat status {};
    if (source.get() < 0 || fstat(source.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return false;
    FileDescriptor target(open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (target.get() < 0)
        return false;
    ssize_t count = 0;
    do
        count = TEMP_FAILURE_RETRY(read(source.get(), bytes.get(), CHUNK));
    while (count > 0 && target.write(bytes.get(), static_cast<std::size_t>(count)));
    // The permissions come last, without a set-user-id bit.
    if (count == 0 && fchmod(target.get(), status.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO)) == 0 && target.close())
        return true;
    unlink(to.c_str());
    return false;
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
        if (fs::is_directory(fs::symlink_status(path)))
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
    return !containsNul(path) && fs::exists(path);
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
    fs::path target;
    bool isCopied = false;
    try {
        target = to;
        isCopied = !containsNul(from) && !containsNul(to) && copyFile(from, target);
    } catch (const std::exception&) {  // whatever it was, the message is the same
    }
    if (!isCopied)
        throw Exception("Filesystem exception: cp(" + from + ", " + to + ") failed. Does " + to + " already exist?");
    return fs::exists(target);
}

void Filesystem::ls(std::string dir, std::vector<std::string>& files, std::vector<std::string>& dirs) {
    forEachEntry(dir, [&](const fs::directory_entry& entry, std::string& name) {
        (entry.is_directory() ? dirs : files).push_back(std::move(name));
    });
}

std::vector<std::string> Filesystem::ls(std::string dir, std::string ext) {
    std::vector<std::string> names;
    forEachEntry(dir, [&](const fs::directory_entry& entry, std::string& name) {
        const bool isMatch = name.size() >= ext.size() && name.compare(name.size() - ext.size(), ext.size(), ext) == 0;
        if (entry.is_regular_file() && isMatch)  // an entry that cannot be examined is an error
            names.push_back(std::move(name));
    });
    return names;
}

}  // namespace tarvos::core::util
