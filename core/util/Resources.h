#pragma once

#include <tarvos/core/Export.h>

#include <string>

namespace tarvos::core::util {

/// Finds the framework's data directory, and files in it.
///
/// A data directory holds the file "DATA_DIR_ID.txt". It is searched for at `$TARVOSDATADIR/data/`, then at ./data/,
/// ../data/ and so on up to ../../../../data/, then at `$TARVOS/data/`; the first one wins. Within it, the
/// application's own directory is used if it exists: tutorials/ followed by the application's name, or else its name
/// alone. Each step is reported on standard error. The path stays as it was found, also when it is relative.
///
/// To make one: a directory "data" with an empty file "DATA_DIR_ID.txt" in it, and `TARVOSDATADIR` set to the directory
/// *above* "data".
///
/// @snippet services.cpp resources
/// @ingroup utilities
class TARVOS_CORE_EXPORT Resources {
public:
    /// Uses @p dataDirPath as it is, untested, or, if it is empty, searches for the data directory of the application
    /// @p appName. If none is found, which is not an error, the path is empty. Throws the file system's error when a
    /// path cannot be tested.
    Resources(std::string dataDirPath, std::string appName);

    /// The data directory, empty if none was found.
    std::string getDataDirPath() const { return mDataDirPath; }

    /// @p name itself if that exists, else its path in the data directory if that exists, else an empty string.
    /// Throws the file system's error when a path cannot be tested.
    std::string findFile(std::string name) const;

private:
    std::string mDataDirPath;
};

}  // namespace tarvos::core::util
