#pragma once

#include <tarvos/core/Export.h>

#include <string>
#include <vector>

/// Services that applications need.
namespace tarvos::core::util {

/// File operations on paths given as strings. Relative paths start at the current directory.
///
/// Errors come in two kinds; `catch (const std::exception&)` gets both. Exception, which also reports itself on
/// standard error, is what rm, mv, cp and ls throw when the operation itself fails. The file system's own error,
/// `std::filesystem::filesystem_error`, passes through with nothing printed: from mkdir and exists, from mv and cp when
/// the final check that the target exists fails, and from ls when the directory cannot be opened or read on.
/// Paths containing NUL are rejected or treated as missing.
///
/// @snippet services.cpp files
/// @ingroup utilities
class TARVOS_CORE_EXPORT Filesystem {
public:
    /// Creates one directory. False if it exists already. Throws the file system's error, also when the parent is
    /// missing or a file has that name.
    static bool mkdir(std::string path);
    /// Removes a file, a link, or a directory with everything below it. Symlinks are removed, never followed; a slash
    /// behind one to a directory is ignored. True, even if there was nothing to remove. Throws Exception, also for "."
    /// and ".." and for a tree deeper than the limit of open files, a part of which may then be gone.
    static bool rm(std::string path);
    /// Whether there is anything at @p path, links followed. Throws the file system's error when that is unknown.
    static bool exists(std::string path);
    /// Renames @p from to @p to, replacing a file there as the file system does. True when @p to exists afterwards.
    static bool mv(std::string from, std::string to);
    /// Copies one regular file, content and permissions (but no set-user-id bit), and never overwrites. True when @p to
    /// exists afterwards. Refuses a pipe, a socket and a device at once, and leaves no partial copy.
    static bool cp(std::string from, std::string to);
    /// Appends the names (not the paths) of the entries of @p dir, in no particular order: directories, links followed,
    /// to @p dirs, the rest to @p files. Throws Exception when @p dir is not a directory or an entry cannot be
    /// examined. Names appended by then remain.
    static void ls(std::string dir, std::vector<std::string>& files, std::vector<std::string>& dirs);
    /// The names of the regular files in @p dir, links followed, that end in @p ext, in no particular order. The ending
    /// is compared byte by byte: both ".png" and "png" find "a.png", an empty one every file. Errors as above.
    static std::vector<std::string> ls(std::string dir, std::string ext);
};

}  // namespace tarvos::core::util
