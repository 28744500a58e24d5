#pragma once

#include "Annotation.h"
#include "Mosaic.h"
#include "Plot.h"
#include "Results.h"
#include "Table.h"
#include "Tracker.h"
#include "VideoFile.h"

#include <optional>
#include <string>
#include <vector>

namespace skin_tracker {

/// Turns a track into its results: a table, a picture of it over time, a mosaic of
/// annotated frames and, where it is wanted, an annotated video.
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
    Plot mPlot;
    Table mTable;
    std::optional<VideoFile> mVideo;
    int mFrames = 0;
    int mFound = 0;

    void write(const std::string& name, const tarvos::core::cvdata::Image& image);
};

}  // namespace skin_tracker
