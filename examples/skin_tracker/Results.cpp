#include "Results.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace skin_tracker {

namespace fs = std::filesystem;

Results::Results(const std::string& path, std::vector<std::string> names) : mPath(path), mPossible(std::move(names)) {
    std::error_code error;
    mCreated = fs::create_directory(path, error);
    if (error)
        throw std::runtime_error("cannot create the output directory " + path + ": " + error.message());
    mWork = path + "/.skin_tracker-XXXXXX";
    if (mkdtemp(mWork.data()) == nullptr) {
        error = std::error_code(errno, std::generic_category());
        mWork.clear();
    }
    try {
        if (error)
            throw std::runtime_error("cannot write to the output directory " + path + ": " + error.message());
        requireReplaceable();
    } catch (...) {
        cleanUp();
        throw;
    }
}

Results::~Results() {
    cleanUp();
}

std::string Results::partOf(const std::string& name) {
    mNames.push_back(name);
    return mWork + "/" + name;
}

std::vector<std::string> Results::publish() {
    requireReplaceable();
    std::vector<std::string> published;
    for (const std::string& name : mNames) {
        fs::rename(mWork + "/" + name, mPath + "/" + name);
        published.push_back(mPath + "/" + name);
    }
    for (const std::string& name : mPossible)
        if (std::find(mNames.begin(), mNames.end(), name) == mNames.end())
            fs::remove(mPath + "/" + name);
    return published;
}

/// Throws if one of the names is a directory's, or another user's file in a directory where only owners may replace.
void Results::requireReplaceable() const {
    struct stat folder {};
    const bool isSticky = stat(mPath.c_str(), &folder) == 0 && (folder.st_mode & S_ISVTX) != 0 && geteuid() != 0 &&
                          folder.st_uid != geteuid();
    for (const std::string& name : mPossible) {
        const std::string path = mPath + "/" + name;
        struct stat file {};
        if (lstat(path.c_str(), &file) != 0)
            continue;
        if (S_ISDIR(file.st_mode))
            throw std::runtime_error(path + " is a directory");
        if (isSticky && file.st_uid != geteuid())
            throw std::runtime_error(path + " belongs to another user");
    }
}

void Results::cleanUp() {
    std::error_code ignored;
    if (!mWork.empty())
        fs::remove_all(mWork, ignored);
    if (mCreated)
        fs::remove(mPath, ignored);  // fails harmlessly unless empty
}

}  // namespace skin_tracker
