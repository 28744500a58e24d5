#include "core/util/Resources.h"

#include "core/util/Filesystem.h"

#include <cstdlib>
#include <iostream>
#include <utility>
#include <vector>

namespace tarvos::core::util {

namespace {

constexpr const char* MARKER = "DATA_DIR_ID.txt";

/// The directories to look at, in order.
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
    std::cerr << "Searching for data dir..." << std::endl;
    if (!mDataDirPath.empty()) {
        std::cerr << "Using given default data dir location:" << mDataDirPath << std::endl;
        return;
    }
    mDataDirPath = searchDataDir();
    if (mDataDirPath.empty()) {
        std::cerr << "Data directory not found!" << std::endl;
        return;
    }
    std::cerr << "Data directory found at: " << mDataDirPath << std::endl;
    enterAppDir();
}

std::string Resources::getDataDirPath() const {
    return mDataDirPath;
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
            std::cerr << "Found " << mAppName << " specific data directory at : " << candidate << std::endl;
            return;
        }
    }
}

}  // namespace tarvos::core::util
