#include "FrameSource.h"

#include <opencv2/core/utils/logger.hpp>
#include <opencv2/videoio.hpp>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/core/util/Filesystem.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <regex>
#include <stdexcept>
#include <vector>

namespace skin_tracker {

namespace {

using tarvos::core::cvdata::Image;
using tarvos::core::util::Filesystem;

/// For inputs without a rate: what most cameras deliver.
constexpr double DEFAULT_FRAME_RATE = 25.0;

/// Whether a file is an image by the ending of its name.
bool isImage(const std::string& name) {
    static const std::regex images(R"(.*\.(png|jpe?g|bmp|p[gp]m|tiff?|webp))", std::regex::icase);
    return std::regex_match(name, images);
}

/// A video file or a camera.
class Capture : public FrameSource {
public:
    explicit Capture(const std::string& path) {
        keepQuiet();
        // From the root: FFmpeg takes what stands before a colon for a protocol.
        if (!mCapture.open(std::filesystem::absolute(path), cv::CAP_FFMPEG))
            throw std::runtime_error("cannot decode the video " + path);
        mFrameCount = std::max(static_cast<int>(mCapture.get(cv::CAP_PROP_FRAME_COUNT)), 0);
    }
    explicit Capture(int camera) {
        keepQuiet();
        if (!mCapture.open(camera, cv::CAP_V4L2))
            throw std::runtime_error("there is no camera " + std::to_string(camera));
    }

    bool read(Image& frame) override {
        if (!mCapture.read(mDecoded) || mDecoded.empty())
            return false;
        if (mDecoded.type() != CV_8UC3)
            throw std::runtime_error("the input has no 8-bit colour frames");
        if (frame.width() != mDecoded.cols || frame.height() != mDecoded.rows)
            frame = Image(mDecoded.cols, mDecoded.rows, Image::CHANNELS_BGR, Image::BITS_8U);
        mDecoded.copyTo(matView(frame));
        return true;
    }

    double frameRate() const override {
        const double rate = mCapture.get(cv::CAP_PROP_FPS);
        return rate > 0.0 ? rate : DEFAULT_FRAME_RATE;
    }
    int frameCount() const override { return mFrameCount; }

private:
    /// Errors of an input are reported once, by this program.
    static void keepQuiet() {
        cv::utils::logging::setLogLevel(cv::utils::logging::LOG_LEVEL_SILENT);
        setenv("OPENCV_FFMPEG_LOGLEVEL", "-8", 0);
    }

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
        for (const std::string& name : names)
            if (isImage(name))
                mPaths.push_back(std::filesystem::path(path) / name);
        if (mPaths.empty())
            throw std::runtime_error("there are no images in the directory " + path);
        std::sort(mPaths.begin(), mPaths.end());
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
                frame = loaded;
                return true;
            }
            std::cerr << "skin_tracker: skipped " + path +
                             cv::format(", which is %dx%d pixels, the frames before it %dx%d\n", loaded.width(),
                                        loaded.height(), mSize.width, mSize.height);
        }
        return false;
    }

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
