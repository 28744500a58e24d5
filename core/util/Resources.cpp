#include <tarvos/core/Report.h>
#include <tarvos/core/util/Filesystem.h>
#include <tarvos/core/util/Resources.h>

#include <cstdlib>
#include <iostream>
#include <utility>
#include <vector>

namespace tarvos::core::util {

namespace {

constexpr const char* MARKER = "DATA_DIR_ID.txt";

/// The directories to search, in order.
std::vector<std::string> dataDirCandidates() {
    std::vector<std::string> candidates;
    const auto addFromEnvironment = [&](const char* variable) {
        if (const char* value = std::getenv(variable))
            candidates.push_back(value + std::string("/data/"));
    };
    addFromEnvironment("TARVOSDATADIR");
    for (const char* path : {"./data/", "../data/", "../../data/", "../../../data/", "../../../../data/"})
        candidates.emplace_back(path);
    addFromEnvironment("TARVOS");
    return candidates;
}

/// The first candidate that holds the marker, or the empty text.
std::string searchDataDir() {
    for (const std::string& candidate : dataDirCandidates())
        if (Filesystem::exists(candidate + MARKER))
            return candidate;
    return "";
}

}  // namespace

Resources::Resources(std::string dataDirPath, std::string appName)
    : mDataDirPath(std::move(dataDirPath)), mAppName(std::move(appName)) {
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
    enterAppDir();
}

std::string Resources::findFile(std::string name) const {
    if (Filesystem::exists(name))
        return name;
    const std::string path = mDataDirPath + "/" + name;
    return Filesystem::exists(path) ? path : "";
}

void Resources::enterAppDir() {
    for (const std::string& candidate : {mDataDirPath + "tutorials/" + mAppName, mDataDirPath + mAppName}) {
        if (Filesystem::exists(candidate)) {
            mDataDirPath = candidate;
            report(std::cerr, "Found " + mAppName + " specific data directory at : " + candidate);
            return;
        }
    }
}

}  // namespace tarvos::core::util
