#include <opencv2/videoio.hpp>
#include <tarvos/core/Contract.h>
#include <tarvos/core/FileDescriptor.h>
#include <tarvos/core/Report.h>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/video/FrameSource.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <limits>
#include <stdexcept>
#include <strings.h>
#include <system_error>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tarvos::video {

namespace {

namespace fs = std::filesystem;
using core::cvdata::Image;

/// For inputs that state no rate: what most cameras deliver.
constexpr double DEFAULT_RATE = 25.0;
/// Higher rates are taken for a container's time base.
constexpr double MAX_RATE = 10'000.0;
/// Larger stamps, in seconds, are FFmpeg's mark of a missing one (AV_NOPTS_VALUE).
constexpr double MAX_STAMP = 1e8;
/// A longer gap between two stamps of a file, in seconds, is a jump.
constexpr double MAX_GAP = 60.0;

/// The times of frames, from stamps that may be missing or jump.
class Clock {
public:
    double time() const { return mTime; }
    /// Takes the stamp of the next frame, in seconds. One that makes no sense is replaced by the last gap, at first
    /// that of the @p rate.
    void tick(double stamp, double rate, double maxGap) {
        const double gap = stamp - mStamp;
        const bool isSensible = std::abs(stamp) < MAX_STAMP && gap > 0.5 / MAX_RATE && gap < maxGap;
        if (mLastGap == 0.0) {
            mLastGap = 1.0 / rate;
            mOffset = -stamp;
        } else if (isSensible) {
            mLastGap = gap;
            mTime = stamp + mOffset;
        } else {
            mTime += mLastGap;
            mOffset = mTime - stamp;
        }
        mStamp = stamp;
    }

private:
    double mTime = 0.0;
    double mStamp = 0.0;
    double mOffset = 0.0;   ///< from the stamps to the times
    double mLastGap = 0.0;  ///< 0 before the first frame
};

/// A video file or a camera.
class Capture : public FrameSource {
public:
    explicit Capture(const std::string& path) {
        // Absolute: FFmpeg reads "x:" as a protocol. It also makes pictures of text files.
        if (!mCapture.open(fs::absolute(path), cv::CAP_FFMPEG) ||
            mCapture.get(cv::CAP_PROP_FOURCC) == cv::VideoWriter::fourcc('a', 'n', 's', 'i'))
            throw std::runtime_error("cannot decode the video " + path);
        char head[8] = "";
        std::ifstream(path, std::ios::binary).read(head, sizeof head);
        const std::string riff(head, 4), atom(head + 4, 4);
        mStatesCount = riff == "RIFF" || atom == "ftyp" || atom == "moov" || atom == "mdat" || atom == "wide";
    }
    explicit Capture(int camera) : mIsCamera(true) {
        if (!mCapture.open(camera, cv::CAP_V4L2))
            throw std::runtime_error("cannot open camera " + std::to_string(camera));
    }

    bool read(Image& frame) override {
        if (!mCapture.read(mDecoded) || mDecoded.empty())
            return false;
        if (mDecoded.type() != CV_8UC3)
            throw std::runtime_error("the input has no 8-bit colour frames");
        // A camera's clock is the time of arrival: a slow reader misses frames.
        const std::chrono::duration<double> now = std::chrono::steady_clock::now() - mStart;
        const double stamp = mIsCamera ? now.count() : mCapture.get(cv::CAP_PROP_POS_MSEC) / 1000.0;
        const double maxGap =
            mIsCamera ? std::numeric_limits<double>::infinity() : std::max(MAX_GAP, 10.0 / frameRate());
        mClock.tick(stamp, frameRate(), maxGap);
        if (frame.channels() != Image::CHANNELS_BGR || frame.bitsPerChannel() != Image::BITS_8U ||
            matView(frame).type() != CV_8UC3 || matView(frame).size() != mDecoded.size())
            frame = Image(mDecoded.cols, mDecoded.rows, Image::CHANNELS_BGR, Image::BITS_8U);
        mDecoded.copyTo(matView(frame));
        ++mNumber;
        return true;
    }
    double time() const override { return mClock.time(); }
    double frameRate() const override {
        const double rate = mCapture.get(cv::CAP_PROP_FPS);
        return rate > 0.0 && rate <= MAX_RATE ? rate : DEFAULT_RATE;
    }
    int frameCount() const override {
        const double count = mStatesCount ? mCapture.get(cv::CAP_PROP_FRAME_COUNT) : 0.0;
        return count > 0.0 && count <= std::numeric_limits<int>::max() ? static_cast<int>(count) : 0;
    }

private:
    bool mIsCamera = false;
    bool mStatesCount = false;  ///< as AVI and QuickTime files do; of others OpenCV has an estimate
    std::chrono::steady_clock::time_point mStart = std::chrono::steady_clock::now();
    Clock mClock;
    cv::VideoCapture mCapture;
    cv::Mat mDecoded;
};

/// The key that sorts a name in natural order: numbers without leading zeros, their lengths before them.
std::string naturalKey(const std::string& name) {
    std::string key;
    for (std::size_t i = 0; i < name.size();) {
        const std::size_t end = std::min(name.find_first_not_of("0123456789", i), name.size());
        const std::size_t start = std::min(name.find_first_not_of('0', i), end);
        if (end > i)
            key.append({'0', static_cast<char>(end - start)}).append(name, start, end - start);
        else
            key += name[end];
        i = std::max(end, i + 1);
    }
    return key;
}

/// Whether a file is an image by the extension of its name.
bool isImage(const fs::path& path) {
    static const char* const EXTENSIONS[] = {".png", ".jpg", ".jpeg", ".bmp", ".ppm", ".pgm", ".tif", ".tiff", ".webp"};
    return std::any_of(std::begin(EXTENSIONS), std::end(EXTENSIONS),
                       [&](const char* extension) { return strcasecmp(extension, path.extension().c_str()) == 0; });
}

/// @p text with its control characters replaced, so that a name cannot pose as a line of its own.
std::string printable(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c == 127; }, '?');
    return text;
}

class ImageDirectory : public FrameSource {
public:
    ImageDirectory(const std::string& path, double rate) : mRate(rate) {
        std::error_code ignored;
        for (const fs::directory_entry& entry : fs::directory_iterator(path))
            if (isImage(entry.path()) && !entry.is_directory(ignored))
                mPaths.emplace_back(naturalKey(entry.path().filename()), entry.path());
        if (mPaths.empty())
            throw std::runtime_error("there are no images in the directory " + path);
        std::sort(mPaths.begin(), mPaths.end());
    }

    bool read(Image& frame) override {
        for (; mNext < mPaths.size(); ++mNext) {
            const std::string& path = mPaths[mNext].second;
            const Image loaded = load(path);
            const cv::Size size(loaded.width(), loaded.height());
            if (mSize.empty())
                mSize = size;
            if (!loaded.empty() && size == mSize) {
                frame = loaded;
                mNumber = static_cast<int>(mNext++);
                return true;
            }
            if (!loaded.empty())
                core::report(std::cerr, "Skipped " + printable(path) +
                                            cv::format(": it has %dx%d pixels, the frames before it %dx%d", size.width,
                                                       size.height, mSize.width, mSize.height));
        }
        return false;
    }
    double time() const override { return std::max(mNumber, 0) / mRate; }
    double frameRate() const override { return mRate; }
    int frameCount() const override { return static_cast<int>(mPaths.size()); }

private:
    double mRate;
    std::vector<std::pair<std::string, std::string>> mPaths;  ///< behind the keys that sort them
    std::size_t mNext = 0;
    cv::Size mSize;

    /// Loads an image, under another name where a failure would print control characters.
    static Image load(const std::string& path) {
        if (printable(path) == path)
            return {path};
        const core::FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
        Image image("/proc/self/fd/" + std::to_string(file.get()));
        if (image.empty())
            core::report(std::cerr, "Skipped " + printable(path));
        return image;
    }
};

}  // namespace

FrameSource::~FrameSource() = default;

std::unique_ptr<FrameSource> FrameSource::open(const std::string& path, double rate) {
    TARVOS_REQUIRE((rate > 0.0 && std::isfinite(rate)) && "FrameSource: the rate is not above 0 and finite.");
    if (path.find('\0') != std::string::npos)
        throw std::runtime_error("a name contains a NUL byte: " + path);
    if (access(path.c_str(), R_OK) != 0)
        throw std::runtime_error(path + ": " + std::generic_category().message(errno));
    if (fs::is_directory(path))
        return std::make_unique<ImageDirectory>(path, rate);
    if (!fs::is_regular_file(path))
        throw std::runtime_error(path + " is neither a directory nor a regular file");
    return std::make_unique<Capture>(path);
}

std::unique_ptr<FrameSource> FrameSource::openCamera(int number) {
    return std::make_unique<Capture>(number);
}

}  // namespace tarvos::video
