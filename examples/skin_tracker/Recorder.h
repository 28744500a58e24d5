#pragma once

#include "Mosaic.h"
#include "Results.h"
#include "tracking/Tracker.h"

#include <tarvos/video/VideoFile.h>

#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace skin_tracker {

/// Turns a track into its results: a table, a mosaic of annotated frames and, if wanted, an annotated video.
/// The README describes the columns of the table.
class Recorder {
public:
    /// Records for the directory @p output. A video is written as well if @p videoRate, in frames per second, is above
    /// 0.
    Recorder(const std::string& output, double videoRate);

    /// Whether @p input is one of the files that a run with @p output replaces or removes.
    static bool replaces(const std::string& input, const std::string& output);

    /// Records what @p tracker found in frame @p number at @p time, and the annotated @p frame.
    void add(int number, double time, const Tracker& tracker, const tarvos::core::cvdata::Image& frame);
    /// Writes and publishes everything; returns the paths. Throws `std::runtime_error` if that fails.
    std::vector<std::string> publish();

    int frames() const { return mFrames; }
    /// The number of frames in which the hand was found.
    int found() const { return mFound; }

private:
    Results mResults;
    Mosaic mMosaic;
    std::ostringstream mTable;
    std::optional<tarvos::video::VideoFile> mVideo;
    int mFrames = 0;
    int mFound = 0;
};

}  // namespace skin_tracker
