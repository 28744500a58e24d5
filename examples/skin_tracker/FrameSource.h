#pragma once

#include "core/cvdata/Image.h"

#include <exception>
#include <memory>
#include <string>

namespace skin_tracker {

/// An input that cannot be used, of which standard error tells already.
struct AlreadyReported : std::exception {};

/// The frames of a video file or of a directory of images, one after the other.
///
/// All frames are 8-bit BGR and of one size. Whatever keeps the input from being read throws `std::runtime_error`, or
/// what has reported itself: AlreadyReported or `tarvos::core::Exception`.
class FrameSource {
public:
    virtual ~FrameSource() = default;

    /// Reads the next frame into @p frame. False at the end, @p frame is then as it was.
    virtual bool read(tarvos::core::cvdata::Image& frame) = 0;
    /// Passes over the next frame. False at the end.
    virtual bool skip() = 0;
    /// Frames a second.
    virtual double frameRate() const = 0;

    /// Opens @p path: a directory, whose images are read in the order of their names, or a video.
    static std::unique_ptr<FrameSource> open(const std::string& path);
};

}  // namespace skin_tracker
