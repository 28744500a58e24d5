#include "FrameSource.h"

#include <opencv2/core/utils/logger.hpp>
#include <opencv2/videoio.hpp>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/core/util/Filesystem.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <iostream>
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

/// What OpenCV captures from a video file or a camera.
class Capture : public FrameSource {
public:
    explicit Capture(const std::string& path) : mName("the video " + path) {
        keepQuiet();
        // From the root: FFmpeg takes what stands before a colon for a protocol.
        if (!mCapture.open(std::filesystem::absolute(path), cv::CAP_FFMPEG))
            throw std::runtime_error("cannot decode " + mName);
        mFrameCount = std::max(static_cast<int>(mCapture.get(cv::CAP_PROP_FRAME_COUNT)), 0);
    }
    explicit Capture(int camera) : mName("camera " + std::to_string(camera)) {
        keepQuiet();
        if (!mCapture.open(camera, cv::CAP_V4L2))
            throw std::runtime_error("there is no " + mName);
    }

    bool read(Image& frame) override {
        if (!mCapture.read(mDecoded) || mDecoded.empty())
            return false;
        if (mDecoded.type() != CV_8UC3)
            throw std::runtime_error(mName + " has no 8-bit colour frames");
        if (frame.width() != mDecoded.cols || frame.height() != mDecoded.rows)
            frame = Image(mDecoded.cols, mDecoded.rows, Image::CHANNELS_BGR, Image::BITS_8U);
        mDecoded.copyTo(matView(frame));
        return true;
    }

    bool skip() override { return mCapture.grab(); }
    double frameRate() const override {
        const double rate = mCapture.get(cv::CAP_PROP_FPS);
        return rate > 0.0 ? rate : DEFAULT_FRAME_RATE;
    }
    int frameCount() const override { return mFrameCount; }

private:
    /// What is wrong with an input is said once, by this program.
    static void keepQuiet() {
        cv::utils::logging::setLogLevel(cv::utils::logging::LOG_LEVEL_SILENT);
        setenv("OPENCV_FFMPEG_LOGLEVEL", "-8", 0);
    }

    std::string mName;
    int mFrameCount = 0;
    cv::VideoCapture mCapture;
    cv::Mat mDecoded;
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
        while (mNext < mPaths.size()) {
            const std::string& path = mPaths[mNext++];
            Image loaded(path);
            if (loaded.empty())
                continue;  // which has been reported
            if (mSize.empty())
                mSize = cv::Size(loaded.width(), loaded.height());
            if (mSize == cv::Size(loaded.width(), loaded.height())) {
                frame = std::move(loaded);
                return true;
            }
            std::cerr << "skin_tracker: passed over " + path + ", which is " + size(loaded.width(), loaded.height()) +
                             " pixels, the frames before it " + size(mSize.width, mSize.height) + "\n";
        }
        return false;
    }

    bool skip() override { return mNext < mPaths.size() && ++mNext > 0; }
    double frameRate() const override { return DEFAULT_FRAME_RATE; }
    int frameCount() const override { return static_cast<int>(mPaths.size()); }

private:
    std::vector<std::string> mPaths;
    std::size_t mNext = 0;
    cv::Size mSize;
};

}  // namespace

std::unique_ptr<FrameSource> FrameSource::open(const std::string& path) {
    if (std::filesystem::is_directory(path))
        return std::make_unique<ImageDirectory>(path);
    if (!std::filesystem::is_regular_file(path))
        throw std::runtime_error(path + " is neither a directory nor a regular file");
    return std::make_unique<Capture>(path);
}

std::unique_ptr<FrameSource> FrameSource::openCamera(int number) {
    return std::make_unique<Capture>(number);
}

}  // namespace skin_tracker
