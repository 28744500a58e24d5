#pragma once

#include <opencv2/videoio.hpp>
#include <tarvos/core/Export.h>
#include <tarvos/core/cvdata/Image.h>

#include <string>

namespace tarvos::video {

/// A video that is written frame by frame, as Motion JPEG in an AVI file, which every player reads.
///
/// The file is complete, and checked, once finish() returns; without it, it is whatever was written by then.
///
/// @snippet video.cpp file
/// @ingroup video
class TARVOS_CORE_EXPORT VideoFile {
public:
    /// The file at @p path, which is made with the first frame and replaces one that is there, with @p frameRate frames
    /// per second. Aborts for a rate that is not above 0 or not finite.
    VideoFile(const std::string& path, double frameRate);
    VideoFile(const VideoFile&) = delete;
    VideoFile& operator=(const VideoFile&) = delete;

    /// Appends @p frame. Throws `std::runtime_error` if the file cannot be written. Aborts unless the frame is 8-bit,
    /// of 3 channels and as large as the first. Frames of fewer than 16 rows or columns get black ones.
    void add(const core::cvdata::Image& frame);
    /// Completes the file and reads it again. Throws `std::runtime_error` unless every frame is there, on a full disk
    /// for instance.
    void finish();

private:
    std::string mPath;
    double mFrameRate;
    int mFrames = 0;
    cv::Size mSize;
    cv::VideoWriter mWriter;
    cv::Mat mWithMargin;
};

}  // namespace tarvos::video
