#include "Results.h"

#include "core/util/Filesystem.h"

#include <opencv2/core/core_c.h>
#include <opencv2/imgcodecs.hpp>

#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <unistd.h>

namespace skin_tracker {

using tarvos::core::cvdata::Image;
using tarvos::core::util::Filesystem;

Results::Results(const std::string& path) : mPath(path) {
    try {
        mCreated = Filesystem::mkdir(path);
    } catch (const std::exception& error) {
        throw std::runtime_error("cannot create the output directory " + path);
    }
    if (access(path.c_str(), W_OK | X_OK) != 0)
        throw std::runtime_error("cannot write to the output directory " + path);
}

Results::~Results() {
    for (const std::string& name : mNames)
        std::remove(partPath(name).c_str());
    if (mCreated)
        std::remove(mPath.c_str());  // which only an empty directory lets happen
}

std::string Results::partPath(const std::string& name) const {
    return mPath + "/.part." + name;
}

std::string Results::partOf(const std::string& name) {
    mNames.push_back(name);
    return partPath(name);
}

void Results::write(const std::string& name, const std::string& text) {
    std::ofstream file(partOf(name), std::ios::binary);
    file << text;
    file.close();
    if (!file)
        throw std::runtime_error("cannot write " + mPath + "/" + name);
}

void Results::write(const std::string& name, const Image& image) {
    std::vector<unsigned char> encoded;
    cv::imencode(name.substr(name.rfind('.')), cv::cvarrToMat(image.iplImage()), encoded);
    write(name, std::string(encoded.begin(), encoded.end()));
}

void Results::publish() {
    for (const std::string& name : mNames)
        Filesystem::mv(partPath(name), mPath + "/" + name);
    mNames.clear();
    mCreated = false;
}

}  // namespace skin_tracker
