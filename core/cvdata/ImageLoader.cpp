#include "core/cvdata/ImageLoader.h"

#include <opencv2/imgcodecs.hpp>

#include <cstdint>
#include <cstdio>
#include <iostream>
#include <limits>
#include <sys/mman.h>
#include <unistd.h>

namespace tarvos::core::cvdata {

namespace {

/// Holds back what is written to standard error during its life. OpenCV, libpng and libjpeg each write there in their
/// own way, so the file descriptor is the one place where all of them can be kept quiet.
class HeldStandardError {
public:
    HeldStandardError() : mHeld(memfd_create("held standard error", MFD_CLOEXEC)), mStandardError(dup(STDERR_FILENO)) {
        std::fflush(stderr);
        if (mHeld >= 0 && mStandardError >= 0)
            dup2(mHeld, STDERR_FILENO);
    }
    ~HeldStandardError() {
        std::fflush(stderr);
        if (mHeld >= 0 && mStandardError >= 0)
            dup2(mStandardError, STDERR_FILENO);
        close(mHeld);
        close(mStandardError);
    }
    HeldStandardError(const HeldStandardError&) = delete;
    HeldStandardError& operator=(const HeldStandardError&) = delete;

    std::string text() const {
        std::string text;
        char chunk[512];
        ssize_t count = 0;
        while ((count = pread(mHeld, chunk, sizeof chunk, static_cast<off_t>(text.size()))) > 0)
            text.append(chunk, static_cast<std::size_t>(count));
        return text;
    }

private:
    int mHeld;
    int mStandardError;
};

}  // namespace

cv::Mat loadColourImage(const std::string& path) try {
    std::string warnings;
    cv::Mat pixels;
    {
        const HeldStandardError held;
        pixels = cv::imread(path, cv::IMREAD_COLOR | cv::IMREAD_IGNORE_ORIENTATION);
        if (!pixels.empty())
            warnings = held.text();
    }
    // The most that an OpenCV header counts, rows filled up to 4 bytes.
    if ((std::int64_t{3} * pixels.cols + 3) * pixels.rows > std::numeric_limits<std::int32_t>::max())
        return {};
    // An image that was decoded in part, say, deserves what the decoder said about it.
    std::cerr << warnings << std::flush;
    return pixels;
} catch (const std::exception&) {
    // OpenCV's errors and a lack of memory: there is no image either way.
    return {};
}

}  // namespace tarvos::core::cvdata
