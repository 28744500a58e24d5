#include "Recorder.h"

#include <stdexcept>

namespace skin_tracker {

namespace {

constexpr const char* TABLE = "track.csv";
constexpr const char* MOSAIC = "mosaic.png";
constexpr const char* VIDEO = "track.avi";

}  // namespace

Recorder::Recorder(const std::string& output, double videoRate) : mResults(output) {
    if (videoRate > 0.0)
        mVideo.emplace(mResults.partOf(VIDEO), videoRate);
}

void Recorder::add(int number, double time, const Tracker& tracker, tarvos::core::cvdata::Image& frame) {
    ++mFrames;
    mFound += tracker.found() ? 1 : 0;
    mTable.add(number, time, tracker);
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
    if (!mMosaic.compose().save(mResults.partOf(MOSAIC)))
        throw std::runtime_error("cannot write the mosaic: is the disk full?");
    return mResults.publish({TABLE, MOSAIC, VIDEO});
}

}  // namespace skin_tracker
