#include "FrameSource.h"

#include "core/util/Filesystem.h"

#include <opencv2/core/core_c.h>
#include <opencv2/core/utils/logger.hpp>
#include <opencv2/videoio.hpp>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <vector>

namespace skin_tracker {

namespace {

using tarvos::core::cvdata::Image;
using tarvos::core::util::Filesystem;

/// For inputs that do not say: what most cameras deliver.
constexpr double DEFAULT_FRAME_RATE = 25.0;

std::string size(int width, int height) {
    return std::to_string(width) + "x" + std::to_string(height);
}

/// Whether a file of this name should be an image, going by its ending.
bool isImage(const std::string& name) {
    std::string ending = std::filesystem::path(name).extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(), [](unsigned char c) { return std::tolower(c); });
    static const std::string endings[] = {".png", ".jpg", ".jpeg", ".bmp", ".ppm", ".pgm", ".tif", ".tiff", ".webp"};
    return std::find(std::begin(endings), std::end(endings), ending) != std::end(endings);
}

class Video : public FrameSource {
public:
    explicit Video(const std::string& path) : mPath(path) {
        // What is wrong with a file is said once, by this program.
        cv::utils::logging::setLogLevel(cv::utils::logging::LOG_LEVEL_SILENT);
        setenv("OPENCV_FFMPEG_LOGLEVEL", "-8", 0);
        if (!mCapture.open(path, cv::CAP_FFMPEG))
            throw std::runtime_error("cannot decode the video " + path);
        const double rate = mCapture.get(cv::CAP_PROP_FPS);
        mFrameRate = rate > 0.0 ? rate : DEFAULT_FRAME_RATE;
    }

    bool read(Image& frame) override {
        if (!mCapture.read(mDecoded) || mDecoded.empty())
            return false;
        if (mDecoded.type() != CV_8UC3)
            throw std::runtime_error("the video " + mPath + " has no 8-bit colour frames");
        const IplImage header = cvIplImage(mDecoded);
        frame = Image(&header);
        return true;
    }

    bool skip() override { return mCapture.grab(); }
    double frameRate() const override { return mFrameRate; }

private:
    std::string mPath;
    cv::VideoCapture mCapture;
    cv::Mat mDecoded;
    double mFrameRate = 0.0;
};

class ImageDirectory : public FrameSource {
public:
    explicit ImageDirectory(const std::string& path) {
        std::vector<std::string> names;
        std::vector<std::string> directories;
        Filesystem::ls(path, names, directories);
        names.erase(std::remove_if(names.begin(), names.end(), [](const auto& name) { return !isImage(name); }),
                    names.end());
        if (names.empty())
            throw std::runtime_error("there are no images in the directory " + path);
        std::sort(names.begin(), names.end());
        for (const std::string& name : names)
            mPaths.push_back(path + "/" + name);
    }

    bool read(Image& frame) override {
        if (mNext == mPaths.size())
            return false;
        const std::string& path = mPaths[mNext++];
        Image loaded(path);
        if (loaded.imageBuffer() == nullptr)
            throw AlreadyReported();
        if (mWidth != 0 && (loaded.width() != mWidth || loaded.height() != mHeight))
            throw std::runtime_error("frame " + path + " is " + size(loaded.width(), loaded.height()) +
                                     " pixels, the frames before it " + size(mWidth, mHeight));
        mWidth = loaded.width();
        mHeight = loaded.height();
        frame = std::move(loaded);
        return true;
    }

    bool skip() override { return mNext < mPaths.size() && ++mNext > 0; }
    double frameRate() const override { return DEFAULT_FRAME_RATE; }

private:
    std::vector<std::string> mPaths;
    std::size_t mNext = 0;
    int mWidth = 0;
    int mHeight = 0;
};

}  // namespace

std::unique_ptr<FrameSource> FrameSource::open(const std::string& path) {
    if (std::filesystem::is_directory(path))
        return std::make_unique<ImageDirectory>(path);
    return std::make_unique<Video>(path);
}

}  // namespace skin_tracker
