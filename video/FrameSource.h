#pragma once

#include <tarvos/core/Export.h>
#include <tarvos/core/cvdata/Image.h>

#include <memory>
#include <string>

/// Frames in and out: video files, directories of images, cameras.
namespace tarvos::video {

/// The frames of a video file, a directory of images or a camera, one after the other.
///
/// All frames are 8-bit BGR, and of one size unless a video changes its own. In a directory, images that cannot be read
/// or differ in size from the first are named on standard error and skipped; they leave a gap in number() and time().
/// An input that cannot be used at all throws `std::runtime_error` with the reason, or the file system's own error.
///
/// OpenCV and FFmpeg may write messages of their own; an application that does not want them sets their log levels.
///
/// @snippet video.cpp source
/// @ingroup video
class TARVOS_CORE_EXPORT FrameSource {
public:
    virtual ~FrameSource();
    FrameSource(const FrameSource&) = delete;
    FrameSource& operator=(const FrameSource&) = delete;

    /// Opens the directory or the video file at @p path. A directory's images (.png, .jpg, .jpeg, .bmp, .ppm, .pgm,
    /// .tif, .tiff and .webp, in upper or lower case) are read in natural order of their names, f2.png before f10.png,
    /// at @p rate frames per second; a video file has its own. A rate that is not positive and finite aborts.
    static std::unique_ptr<FrameSource> open(const std::string& path, double rate = 25.0);
    /// Opens a camera of the system; the first has the number 0.
    static std::unique_ptr<FrameSource> openCamera(int number);

    /// Reads the next frame into @p frame, whose time stamp stays. False, with @p frame unchanged, at the end,
    /// where a video's next frame cannot be decoded, and where the camera delivers none. (A truncated video ends this
    /// way, number() + 1 being below a frameCount() that is stated.) Throws `std::runtime_error` if the frames are not
    /// 8-bit colour.
    virtual bool read(core::cvdata::Image& frame) = 0;
    /// The time of the frame read last, in seconds since the first; it increases from frame to frame. 0 before the
    /// first. For a video, by its own time stamps, which need not be evenly spaced (where they make no sense, by
    /// the last gap, at first the frame rate's); for a directory, by the rate; for a camera, when the frame arrived.
    virtual double time() const = 0;
    /// Frames per second, on average in a video whose frames are not evenly spaced. 25 if the input states no plausible
    /// rate.
    virtual double frameRate() const = 0;
    /// The number of frames that the input states: a directory, or a file in AVI or in MP4 and its relatives. 0 for
    /// others.
    virtual int frameCount() const = 0;

    /// The number of the frame read last, counted from 0; -1 before the first.
    int number() const { return mNumber; }

protected:
    FrameSource() = default;
    int mNumber = -1;  ///< what number() returns
};

}  // namespace tarvos::video
