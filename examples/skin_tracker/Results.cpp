#include "Results.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace skin_tracker {

namespace fs = std::filesystem;

Results::Results(const std::string& path) : mPath(path) {
    std::error_code error;
    mCreated = fs::create_directory(path, error);
    if (error)
        throw std::runtime_error("cannot create the output directory " + path);
    mWork = path + "/.skin_tracker-XXXXXX";
    if (mkdtemp(mWork.data()) == nullptr) {
        mWork.clear();
        throw std::runtime_error("cannot write to the output directory " + path);
    }
}

Results::~Results() {
    std::error_code ignored;
    fs::remove_all(mWork, ignored);
    if (mCreated)
        fs::remove(mPath, ignored);  // fails harmlessly unless empty
}

std::string Results::partOf(const std::string& name) {
    mNames.push_back(name);
    return mWork + "/" + name;
}

std::vector<std::string> Results::publish(const std::vector<std::string>& possible) {
    for (const std::string& name : possible)
        if (fs::is_directory(fs::symlink_status(mPath + "/" + name)))
            throw std::runtime_error(mPath + "/" + name + " is a directory");
    std::vector<std::string> published;
    for (const std::string& name : mNames) {
        fs::rename(mWork + "/" + name, mPath + "/" + name);
        published.push_back(mPath + "/" + name);
    }
    for (const std::string& name : possible)
        if (std::find(mNames.begin(), mNames.end(), name) == mNames.end())
            fs::remove(mPath + "/" + name);
    mCreated = false;
    return published;
}

}  // namespace skin_tracker
