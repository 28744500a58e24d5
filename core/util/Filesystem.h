#pragma once

#include "core/Export.h"

#include <string>
#include <vector>

/// Services that applications need.
namespace tarvos::core::util {

/// File operations on paths given as strings. Relative paths start at the current directory.
///
/// rm, mv, cp and ls throw Exception, which also reports itself on standard error. Where an operation says "the file
/// system's error", that is `boost::filesystem::filesystem_error`, and nothing is printed. Nothing is undone after an
/// error.
///
/// @code
/// for (const std::string& name : Filesystem::ls("frames", ".png"))
///     Filesystem::cp("frames/" + name, "backup/" + name);
/// @endcode
/// @ingroup utilities
class TARVOS_CORE_EXPORT Filesystem {
public:
    /// Creates one directory. False when it was there already. Throws the file system's error, also when the parent
    /// is missing or a file has that name.
    static bool mkdir(std::string path);
    /// Removes a file, a link, or a directory with everything below it (of a link to a directory only the link).
    /// True, also when there was nothing to remove. Throws Exception.
    static bool rm(std::string path);
    /// Whether there is anything at @p path, links followed. Throws the file system's error when it cannot be told.
    static bool exists(std::string path);
    /// Renames @p from to @p to, replacing a file there as the file system does. True when @p to exists afterwards.
    /// Throws Exception.
    static bool mv(std::string from, std::string to);
    /// Copies one file and never overwrites. True when @p to exists afterwards. Throws Exception.
    static bool cp(std::string from, std::string to);
    /// Appends the names (not the paths) of what is in @p dir, in no particular order: directories, links followed,
    /// to @p dirs, the rest to @p files. Throws Exception when @p dir is no directory.
    static void ls(std::string dir, std::vector<std::string>& files, std::vector<std::string>& dirs);
    /// The names of the regular files in @p dir that end in @p ext, in no particular order. The ending is compared
    /// byte by byte: both ".png" and "png" find "a.png", an empty one every file. Throws Exception when @p dir is no
    /// directory.
    static std::vector<std::string> ls(std::string dir, std::string ext);
};

}  // namespace tarvos::core::util
