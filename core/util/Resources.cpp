#include <tarvos/core/Report.h>
#include <tarvos/core/util/Filesystem.h>
#include <tarvos/core/util/Resources.h>

#include <cstdlib>
#include <iostream>
#include <utility>

namespace tarvos::core::util {

namespace {

/// The first directory that holds the marker, or the empty text.
std::string searchDataDir() {
    const char* first = std::getenv("TARVOSDATADIR");
    const char* last = std::getenv("TARVOS");
    for (const char* root : {first, ".", "..", "../..", "../../..", "../../../..", last})
        if (root != nullptr && Filesystem::exists(root + std::string("/data/DATA_DIR_ID.txt")))
            return root + std::string("/data/");
    return "";
}

}  // namespace

Resources::Resources(std::string dataDirPath, std::string appName) : mDataDirPath(std::move(dataDirPath)) {
    report(std::cerr, "Searching for data dir...");
    if (!mDataDirPath.empty()) {
        report(std::cerr, "Using given default data dir location:" + mDataDirPath);
        return;
    }
    mDataDirPath = searchDataDir();
    if (mDataDirPath.empty()) {
        report(std::cerr, "Data directory not found!");
        return;
    }
    report(std::cerr, "Data directory found at: " + mDataDirPath);
    const std::string found = "Found " + appName + " specific data directory at : ";
    for (const std::string& candidate : {mDataDirPath + "tutorials/" + appName, mDataDirPath + appName})
        if (Filesystem::exists(candidate)) {
            mDataDirPath = candidate;
            report(std::cerr, found + candidate);
            return;
        }
}

std::string Resources::findFile(std::string name) const {
    if (Filesystem::exists(name))
        return name;
    if (name.empty() || mDataDirPath.empty())
        return "";
    const std::string path = mDataDirPath + "/" + name;
    return Filesystem::exists(path) ? path : "";
}

}  // namespace tarvos::core::util
