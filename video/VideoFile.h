#pragma once

#include <opencv2/videoio.hpp>
#include <tarvos/core/Export.h>
#include <tarvos/core/cvdata/Image.h>

#include <string>

namespace tarvos::video {

/// A video that is written frame by frame, as Motion JPEG in an AVI file, which every player reads. Neither copyable
/// nor movable.
///
/// Once finish() returns, the file is complete and checked; otherwise it may be incomplete.
///
/// @snippet video.cpp file
/// @ingroup video
class TARVOS_CORE_EXPORT VideoFile {
public:
    /// The file at @p path, which is created with the first frame and replaces an existing one, with @p frameRate
    /// frames per second, evenly: gaps between the frames are lost. Throws `std::runtime_error` unless the name ends in
    /// .avi and has no NUL byte. Aborts for a rate that is not above 0 or not finite.
    VideoFile(const std::string& path, double frameRate);
    VideoFile(const VideoFile&) = delete;
    VideoFile& operator=(const VideoFile&) = delete;

    /// Appends @p frame, in BGR. Throws `std::runtime_error` if the file cannot be created; a disk that is full later
    /// shows in finish(). Aborts unless the frame is 8-bit CHANNELS_BGR and as large as the first, and after
    /// finish(). Frames under 16 pixels in a direction are padded with black; the video is then larger than the frame.
    void add(const core::cvdata::Image& frame);
    /// Completes the file and decodes it again. Throws `std::runtime_error` if a frame is missing, as on a
    /// full disk, or if none was added.
    void finish();

private:
    std::string mPath;
    double mFrameRate;
    int mFrames = 0;
    bool mIsFinished = false;
    cv::Size mSize;
    cv::VideoWriter mWriter;
    cv::Mat mWithMargin;
};

}  // namespace tarvos::video
