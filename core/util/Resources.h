#pragma once

#include "../Export.h"

#include <string>

namespace tarvos::core::util {

/// Finds the framework's data directory, and files in it.
///
/// A data directory holds the file "DATA_DIR_ID.txt". It is looked for at `$TARVOSDATADIR/data/`, then at ./data/,
/// ../data/ and so on up to ../../../../data/, then at `$TARVOS/data/`; the first one wins. An application's own data
/// in tutorials/ followed by its name, or in a directory of its name, is preferred where there is such a directory.
/// Each step is reported on standard error.
///
/// The path is kept as it was found, relative to the current directory of that time or absolute.
///
/// To make one: a directory "data" with an empty file "DATA_DIR_ID.txt" in it, and `TARVOSDATADIR` set to the directory
/// *above* "data".
///
/// @snippet services.cpp resources
/// @ingroup utilities
class TARVOS_CORE_EXPORT Resources {
public:
    /// Uses @p dataDirPath as it is, untested, or, when it is empty, looks for the data directory of the application
    /// @p appName. Not finding one is no error: the path is then empty. Throws the file system's error when a path
    /// cannot be tested.
    Resources(std::string dataDirPath, std::string appName);

    /// The data directory, empty when none was found.
    std::string getDataDirPath() const;

    /// @p name itself when that exists, else its path in the data directory when that exists, else the empty text.
    /// Throws the file system's error when a path cannot be tested.
    std::string findFile(std::string name) const;

private:
    std::string mDataDirPath;
    std::string mAppName;

    void enterAppDir();
};

}  // namespace tarvos::core::util
