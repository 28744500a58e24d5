#include "Recorder.h"

#include "Annotation.h"

#include <opencv2/core.hpp>
#include <tarvos/core/cvdata/MatView.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <stdexcept>

namespace skin_tracker {

namespace {

using tarvos::core::cvdata::Image;
using tarvos::core::cvdata::TiledImage;

constexpr const char* TABLE = "track.csv";
constexpr const char* MOSAIC = "mosaic.png";
constexpr const char* VIDEO = "track.avi";

}  // namespace

Recorder::Recorder(const std::string& output, double videoRate) : mResults(output, {TABLE, MOSAIC, VIDEO}) {
    mTable << "frame,time,x,y,width,height,vx,vy,blobs,area,found\n" << std::fixed;
    if (videoRate > 0.0)
        mVideo.emplace(mResults.partOf(VIDEO), videoRate);
}

bool Recorder::replaces(const std::string& input, const std::string& output) {
    const auto isOne = [&](const char* name) {
        std::error_code none;
        return std::filesystem::equivalent(input, output + "/" + name, none);
    };
    return isOne(TABLE) || isOne(MOSAIC) || isOne(VIDEO);
}

void Recorder::add(int number, double time, const Tracker& tracker, const Image& frame) {
    ++mFrames;
    mFound += tracker.found() ? 1 : 0;
    mTable << number << ',' << std::setprecision(4) << time << std::setprecision(2);
    if (tracker.tracking()) {
        const cv::Rect2d box = tracker.motion().box();
        const cv::Point2d centre = tracker.motion().centre(), velocity = tracker.motion().velocity();
        mTable << ',' << centre.x << ',' << centre.y << ',' << box.width << ',' << box.height << ',' << velocity.x
               << ',' << velocity.y;
    } else {
        mTable << ",,,,,,";
    }
    mTable << ',' << tracker.blobs().dimension() << ',' << tracker.area() << ',' << tracker.found() << '\n';
    mMosaic.add(frame, cv::format("frame %d, %.2f s", number, time));
    if (mVideo)
        mVideo->add(frame);
}

std::vector<std::string> Recorder::publish() {
    if (mVideo)
        mVideo->finish();
    std::ofstream table(mResults.partOf(TABLE), std::ios::binary);
    table << mTable.str();
    table.close();
    const TiledImage mosaic = mMosaic.compose();
    cv::Mat withLegend;
    cv::vconcat(matView(mosaic), Annotation::legend(mosaic.width()), withLegend);
    if (!table || !tarvos::core::cvdata::imageOf(withLegend).save(mResults.partOf(MOSAIC)))
        throw std::runtime_error("cannot write the results: is the disk full?");
    return mResults.publish();
}

}  // namespace skin_tracker
