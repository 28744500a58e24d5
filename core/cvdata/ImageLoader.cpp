#include "core/cvdata/ImageLoader.h"

#include <opencv2/core/core_c.h>
#include <opencv2/imgcodecs.hpp>

#include <cstdio>
#include <iostream>
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

cv::Mat decode(const std::string& path) {
    std::string warnings;
    cv::Mat pixels;
    {
        const HeldStandardError held;
        pixels = cv::imread(path, cv::IMREAD_COLOR | cv::IMREAD_IGNORE_ORIENTATION);
        if (!pixels.empty())
            warnings = held.text();
    }
    // An image that was decoded in part, say, deserves what the decoder said about it.
    std::cerr << warnings << std::flush;
    return pixels;
}

}  // namespace

void ImageRelease::operator()(IplImage* image) const noexcept {
    cvReleaseImage(&image);
}

LoadedImage loadColourImage(const std::string& path) try {
    const cv::Mat pixels = decode(path);
    if (pixels.empty())
        return nullptr;
    LoadedImage image(cvCreateImage(cvSize(pixels.cols, pixels.rows), IPL_DEPTH_8U, 3));
    pixels.copyTo(cv::cvarrToMat(image.get()));
    return image;
} catch (const std::exception&) {
    // OpenCV's errors, too large for an IplImage included, and a lack of memory: there is no image either way.
    return nullptr;
}

}  // namespace tarvos::core::cvdata
