#include "Recorder.h"

#include <opencv2/core.hpp>
#include <tarvos/core/cvdata/MatView.h>

#include <stdexcept>

namespace skin_tracker {

namespace {

using tarvos::core::cvdata::Image;
using tarvos::core::cvdata::TiledImage;

constexpr const char* TABLE = "track.csv";
constexpr const char* MOSAIC = "mosaic.png";
constexpr const char* PLOT = "track.png";
constexpr const char* VIDEO = "track.avi";

}  // namespace

Recorder::Recorder(const std::string& output, double videoRate) : mResults(output) {
    if (videoRate > 0.0)
        mVideo.emplace(mResults.partOf(VIDEO), videoRate);
}

void Recorder::add(int number, double time, const Tracker& tracker, Image& frame) {
    ++mFrames;
    mFound += tracker.found() ? 1 : 0;
    mTable.add(number, time, tracker);
    mPlot.add(time, tracker, {frame.width(), frame.height()});
    mAnnotation.follow(tracker);
    mAnnotation.draw(tracker, frame);
    mMosaic.add(frame, cv::format("frame %d, %.2f s", number, time));
    if (mVideo)
        mVideo->add(frame);
}

std::vector<std::string> Recorder::publish() {
    if (mVideo)
        mVideo->finish();
    mResults.write(TABLE, mTable.text());
    const TiledImage mosaic = mMosaic.compose();
    cv::Mat withLegend;
    cv::vconcat(matView(mosaic), Annotation::legend(mosaic.width()), withLegend);
    write(MOSAIC, tarvos::core::cvdata::imageOf(withLegend));
    write(PLOT, mPlot.draw());
    return mResults.publish({TABLE, MOSAIC, PLOT, VIDEO});
}

void Recorder::write(const std::string& name, const Image& image) {
    if (!image.save(mResults.partOf(name)))
        throw std::runtime_error("cannot write " + name + ": is the disk full?");
}

}  // namespace skin_tracker
