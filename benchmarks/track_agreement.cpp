/// @file
/// Compares a track with an independent rule for skin, `track_agreement VIDEO track.csv`: in how many frames the
/// tracked box overlaps the box of the visible skin, and how often the tracked centre leaves it. Fails below the
/// goal: an intersection over union of 0.7 in 90 % of the frames, and no centre outside.

#include "FrameSource.h"
#include "tracking/Regions.h"

#include <opencv2/imgproc.hpp>
#include <tarvos/core/cvdata/MatView.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <vector>

namespace {

using skin_tracker::FrameSource;
using tarvos::core::cvdata::Image;

constexpr double GOOD_OVERLAP = 0.7;
constexpr double GOOD_SHARE = 0.9;

/// The box of the largest region of skin by a rule of thumb on chrominance that the tracker does not use.
cv::Rect visibleSkin(const Image& frame) {
    cv::Mat chrominance;
    cv::Mat mask;
    cv::cvtColor(matView(frame), chrominance, cv::COLOR_BGR2YCrCb);
    cv::inRange(chrominance, cv::Scalar(0, 135, 85), cv::Scalar(255, 180, 135), mask);
    cv::morphologyEx(mask, mask, cv::MORPH_OPEN, cv::getStructuringElement(cv::MORPH_ELLIPSE, cv::Size(5, 5)));
    const skin_tracker::Regions regions(mask, 0.0);
    return regions.largest() != nullptr ? skin_tracker::boxOf(*regions.largest()) : cv::Rect();
}

struct Row {
    double x, y, width, height;
};

/// The rows of a track.csv, by frame.
std::vector<Row> readTrack(const std::string& path) {
    std::ifstream file(path);
    std::string line;
    if (!std::getline(file, line) || line.rfind("frame,time,x,y,width,height,", 0) != 0)
        throw std::runtime_error(path + " is no track");
    std::vector<Row> rows;
    while (std::getline(file, line)) {
        Row row{};
        std::sscanf(line.c_str(), "%*[^,],%*[^,],%lf,%lf,%lf,%lf", &row.x, &row.y, &row.width, &row.height);
        rows.push_back(row);
    }
    return rows;
}

int compare(const std::string& video, const std::string& track) {
    const auto source = FrameSource::open(video);
    const std::vector<Row> rows = readTrack(track);
    int good = 0;
    int outside = 0;
    double worst = 1.0, sum = 0.0;
    Image frame;
    for (const Row& row : rows) {
        if (!source->read(frame))
            throw std::runtime_error("the track has more rows than the video has frames");
        const cv::Rect2d skin = visibleSkin(frame);
        const cv::Rect2d box(row.x - row.width / 2, row.y - row.height / 2, row.width, row.height);
        const double overlap = (skin & box).area() / (skin.area() + box.area() - (skin & box).area());
        good += overlap >= GOOD_OVERLAP ? 1 : 0;
        outside += skin.contains({row.x, row.y}) ? 0 : 1;
        worst = std::min(worst, overlap);
        sum += overlap;
    }
    const double count = static_cast<double>(rows.size());
    std::cout << "frames: " << rows.size() << "\nintersection over union at least " << GOOD_OVERLAP << ": "
              << 100.0 * good / count << " % of the frames\nmean intersection over union: " << sum / count
              << "\nleast intersection over union: " << worst << "\nframes with the centre outside: " << outside
              << std::endl;
    return good >= GOOD_SHARE * count && outside == 0 && !rows.empty() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        if (argc != 3)
            throw std::runtime_error("usage: track_agreement VIDEO track.csv");
        return compare(argv[1], argv[2]);
    } catch (const std::exception& error) {
        std::cerr << "track_agreement: " << error.what() << std::endl;
        return 2;
    }
}
