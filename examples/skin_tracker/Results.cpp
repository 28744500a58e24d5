#include "Results.h"

#include <tarvos/core/util/Filesystem.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace skin_tracker {

namespace fs = std::filesystem;
using tarvos::core::util::Filesystem;

Results::Results(const std::string& path) : mPath(path) {
    try {
        mCreated = Filesystem::mkdir(path);
    } catch (const std::exception& error) {
        throw std::runtime_error("cannot create the output directory " + path);
    }
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
        fs::remove(mPath, ignored);  // which only an empty directory lets happen
}

std::string Results::partOf(const std::string& name) {
    mNames.push_back(name);
    return mWork + "/" + name;
}

void Results::write(const std::string& name, const std::string& text) {
    std::ofstream file(partOf(name), std::ios::binary);
    file << text;
    file.close();
    if (!file)
        throw std::runtime_error("cannot write " + name + ": is the disk full?");
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
