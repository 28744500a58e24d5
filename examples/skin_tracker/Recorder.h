#pragma once

#include "Annotation.h"
#include "Mosaic.h"
#include "Results.h"
#include "VideoFile.h"
#include "tracking/Tracker.h"

#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace skin_tracker {

/// Turns a track into its results: a table, a mosaic of annotated frames and, if wanted, an annotated video.
///
/// The table has comma-separated columns and a row per frame: frame number, time in seconds, centre x and y, width and
/// height in pixels, velocity vx and vy in pixels per second, the number of regions, the area in pixels, and whether
/// the hand was found. Without a track the columns from x to vy are empty.
class Recorder {
public:
    /// Records for @p output. A video is written as well if @p videoRate, in frames a second, is above 0.
    Recorder(const std::string& output, double videoRate);

    /// Takes what @p tracker knows of frame @p number at @p time, and draws it into @p frame.
    void add(int number, double time, const Tracker& tracker, tarvos::core::cvdata::Image& frame);
    /// Writes and publishes everything; the paths. Throws `std::runtime_error` when that cannot be done, and then
    /// publishes nothing.
    std::vector<std::string> publish();

    int frames() const { return mFrames; }
    /// In how many frames the hand was found.
    int found() const { return mFound; }

private:
    Results mResults;
    Annotation mAnnotation;
    Mosaic mMosaic;
    std::ostringstream mTable;
    std::optional<VideoFile> mVideo;
    int mFrames = 0;
    int mFound = 0;
};

}  // namespace skin_tracker
