#pragma once

#include <tarvos/core/cvdata/Image.h>

#include <memory>
#include <string>

namespace skin_tracker {

/// The frames of a video file, a directory of images or a camera, one after the other.
///
/// All frames are 8-bit BGR and of one size: images of a directory that cannot be read, or differ in size from the
/// first, are named on standard error and skipped. An input that cannot be used at all throws `std::runtime_error`,
/// or a `tarvos::core::Exception`, which has reported itself.
class FrameSource {
public:
    virtual ~FrameSource() = default;

    /// Reads the next frame into @p frame. False at the end; @p frame is then unchanged.
    virtual bool read(tarvos::core::cvdata::Image& frame) = 0;
    /// Frames per second.
    virtual double frameRate() const = 0;
    /// The number of frames according to the input; 0 if it is unknown.
    virtual int frameCount() const = 0;

    /// Opens a camera; the first has the number 0.
    static std::unique_ptr<FrameSource> openCamera(int number);
    /// Opens @p path: a directory, whose images are read in the order of their names, or a video file.
    static std::unique_ptr<FrameSource> open(const std::string& path);
};

}  // namespace skin_tracker
