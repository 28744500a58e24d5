#pragma once

#include <opencv2/videoio.hpp>
#include <tarvos/core/cvdata/Image.h>

#include <string>

namespace skin_tracker {

/// A video that is written frame by frame, as Motion JPEG in an AVI file.
class VideoFile {
public:
    /// The file at @p path, which is made with the first frame.
    VideoFile(std::string path, double frameRate) : mPath(std::move(path)), mFrameRate(frameRate) {}

    /// Appends @p frame, 8-bit BGR and as large as the first. Throws `std::runtime_error` when it cannot be written.
    void add(const tarvos::core::cvdata::Image& frame);
    /// Completes the file and reads it again. Throws `std::runtime_error` unless every frame is there.
    void finish();

private:
    std::string mPath;
    double mFrameRate;
    int mFrames = 0;
    cv::VideoWriter mWriter;
    cv::Mat mWithMargin;
};

}  // namespace skin_tracker
