#pragma once

#include <tarvos/core/cvdata/Image.h>

#include <memory>
#include <string>

namespace skin_tracker {

/// The frames of a video file or of a directory of images, one after the other.
///
/// All frames are 8-bit BGR and of one size: images of a directory that cannot be read, or differ in size from the
/// first, are named on standard error and passed over. An input that cannot be used at all throws `std::runtime_error`,
/// or a `tarvos::core::Exception`, which has reported itself.
class FrameSource {
public:
    virtual ~FrameSource() = default;

    /// Reads the next frame into @p frame. False at the end, @p frame is then as it was.
    virtual bool read(tarvos::core::cvdata::Image& frame) = 0;
    /// "video", "directory" or "camera".
    virtual const char* kind() const = 0;
    /// Frames a second.
    virtual double frameRate() const = 0;
    /// How many frames the input says that there are; 0 when it does not say.
    virtual int frameCount() const = 0;

    /// Opens the camera with the number @p number, the first being 0.
    static std::unique_ptr<FrameSource> openCamera(int number);
    /// Opens @p path: a directory, whose images are read in the order of their names, or a video file.
    static std::unique_ptr<FrameSource> open(const std::string& path);
};

}  // namespace skin_tracker
