/// @file
/// Finds skin in a video or in a directory of images.

#include "FrameSource.h"
#include "Mosaic.h"
#include "Results.h"
#include "SkinModel.h"
#include "core/parser/CmdLineParser.h"
#include "core/util/Resources.h"

#include <opencv2/core/core_c.h>
#include <opencv2/imgproc.hpp>

#include <charconv>
#include <iostream>
#include <sstream>
#include <stdexcept>

namespace {

using namespace skin_tracker;
using tarvos::core::cvdata::Image;
using tarvos::core::parser::CmdLineParser;
using tarvos::core::util::Resources;

/// Specks up to this share of the picture are no hand.
constexpr double LEAST_AREA = 0.002;
constexpr int FRAMES_PER_PROGRESS_LINE = 100;

/// The whole number that option @p name holds; anything else, or less than @p least, throws.
int numberOf(const CmdLineParser& parser, const std::string& name, int least) {
    const std::string text = parser.getValue(name);
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < least)
        throw std::runtime_error("-" + name + " takes a whole number from " + std::to_string(least) +
                                 " up, not \"" + text + "\"");
    return number;
}

/// A connected region of skin.
struct Region {
    cv::Rect box;
    int area = 0;
    cv::Mat mask;  ///< 255 inside the region
};

/// The largest region of skin in a frame; of area 0 when there is none.
Region largestRegion(const Image& frame, const SkinModel& model) {
    const cv::Mat pixels = cv::cvarrToMat(frame.iplImage());
    cv::Mat hsv;
    cv::Mat mask;
    cv::cvtColor(pixels, hsv, cv::COLOR_RGB2HSV);
    model.mark(hsv, mask);
    const cv::Mat kernel = cv::getStructuringElement(cv::MORPH_ELLIPSE, cv::Size(7, 7));
    cv::morphologyEx(mask, mask, cv::MORPH_CLOSE, kernel);
    cv::morphologyEx(mask, mask, cv::MORPH_OPEN, kernel);

    cv::Mat labels;
    cv::Mat statistics;
    cv::Mat centroids;
    const int count = cv::connectedComponentsWithStats(mask, labels, statistics, centroids);
    Region largest;
    for (int label = 1; label < count; ++label) {
        const int* entry = statistics.ptr<int>(label);
        if (entry[cv::CC_STAT_AREA] < LEAST_AREA * frame.width() * frame.height() ||
            entry[cv::CC_STAT_AREA] <= largest.area)
            continue;
        largest.box = {entry[cv::CC_STAT_LEFT], entry[cv::CC_STAT_TOP], entry[cv::CC_STAT_WIDTH],
                       entry[cv::CC_STAT_HEIGHT]};
        largest.area = entry[cv::CC_STAT_AREA];
        largest.mask = labels == label;
    }
    return largest;
}

void draw(Image& frame, const Region& region) {
    if (region.area == 0)
        return;
    cv::Mat pixels = cv::cvarrToMat(frame.iplImage());
    std::vector<std::vector<cv::Point>> outlines;
    cv::findContours(region.mask, outlines, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE);
    cv::drawContours(pixels, outlines, -1, cv::Scalar(0, 255, 0), 2);
    cv::rectangle(pixels, region.box, cv::Scalar(255, 0, 0), 2);
}

void run(const CmdLineParser& parser) {
    const int step = numberOf(parser, "step", 1);
    const int most = numberOf(parser, "frames", 0);
    const Resources resources("", "skin_tracker");
    const std::string input = resources.findFile(parser.getValue("input"));
    if (input.empty())
        throw std::runtime_error("there is no " + parser.getValue("input"));
    const auto source = FrameSource::open(input);
    Results results(parser.getValue("output"));

    const SkinModel model;
    Mosaic mosaic;
    std::ostringstream table;
    table << "frame,x,y,width,height,area\n";
    Image frame;
    int used = 0;
    for (int number = 0;
         (most == 0 || used < most) && (number % step == 0 ? source->read(frame) : source->skip());
         ++number) {
        if (number % step != 0)
            continue;
        const Region region = largestRegion(frame, model);
        table << number << ',' << region.box.x << ',' << region.box.y << ',' << region.box.width << ','
              << region.box.height << ',' << region.area << '\n';
        if (mosaic.wantsNext()) {
            draw(frame, region);
            mosaic.add(frame);
        } else {
            mosaic.pass();
        }
        if (++used % FRAMES_PER_PROGRESS_LINE == 0)
            std::cerr << "skin_tracker: " << used << " frames" << std::endl;
    }
    if (used == 0)
        throw std::runtime_error("no frame can be decoded in " + input);
    results.write("detections.csv", table.str());
    results.write("mosaic.png", mosaic.compose());
    results.publish();
}

}  // namespace

int main(int argc, char** argv) {
    CmdLineParser parser(argc, argv);
    parser.setAppDescription("Finds skin in a video or in a directory of images");
    parser.addOption("input", "video or directory, looked for in the data directory too", "", true);
    parser.addOption("output", "directory for the results", "skin_tracker_output", false);
    parser.addOption("step", "use every n-th frame", "1", false);
    parser.addOption("frames", "use at most so many frames, 0 for all", "0", false);
    parser.parse();
    try {
        run(parser);
        return 0;
    } catch (const AlreadyReported&) {
    } catch (const std::exception& error) {
        std::cerr << "skin_tracker: " << error.what() << std::endl;
    }
    return 1;
}
