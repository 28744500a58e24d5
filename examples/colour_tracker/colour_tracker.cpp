// Follows an object by its colours with a particle filter: Perez et al., "Color-Based Probabilistic Tracking", 2002.

#include <opencv2/core/utils/logger.hpp>
#include <opencv2/highgui.hpp>
#include <opencv2/imgproc.hpp>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/core/cvdata/pose/VectorPose.h>
#include <tarvos/core/parser/CmdLineParser.h>
#include <tarvos/video/FrameSource.h>
#include <tarvos/vision/Histogram.h>
#include <tarvos/vision/ParticleFilter.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <stdexcept>

using namespace tarvos;
using namespace tarvos::core;
using namespace tarvos::vision;

namespace {

cvdata::ColourHist2d coloursOf(const cv::Mat& hsv, const cv::Rect& box) {
    cvdata::ColourHist2d colours(12, 12, 4);
    addPixels(colours, hsv(box), {}, HSV_LIMITS);
    return colours;
}

/// The box of a state (centre, width and height) inside the frame.
cv::Rect boxOf(const State& state, const cv::Size& frame) {
    const math::Vector pose = state.getPoseData();
    const cv::Rect2d box(pose[0] - pose[2] / 2, pose[1] - pose[3] / 2, pose[2], pose[3]);
    return cv::Rect(box & cv::Rect2d({}, cv::Size2d(frame)));
}

cv::Rect startBox(const std::string& text, bool isShown, const cvdata::Image& frame) {
    cv::Rect box;
    char rest = 0;
    if (text.empty() && !isShown)
        throw std::runtime_error("give the -box to follow, or -show to draw it");
    if (text.empty())
        box = cv::selectROI("colour_tracker", matView(frame));
    else if (std::sscanf(text.c_str(), "%d,%d,%d,%d%c", &box.x, &box.y, &box.width, &box.height, &rest) != 4)
        throw std::runtime_error("-box expects x,y,width,height in the first frame, got \"" + text + "\"");
    if (box.empty() || (cv::Rect2d(box) & cv::Rect2d(0, 0, frame.width(), frame.height())) != cv::Rect2d(box))
        throw std::runtime_error("the box is empty or not inside the frame");
    return box;
}

void show(cvdata::Image& frame, const ParticleFilter& filter, const cv::Rect& box) {
    const cv::Mat pixels = matView(frame);
    for (unsigned int i = 0; i < filter.particles().rows(); ++i)
        cv::circle(pixels, cv::Point2d(filter.particles()(i, 0), filter.particles()(i, 1)), 1, {0, 220, 255});
    cv::rectangle(pixels, box, {255, 64, 0}, 2);
    cv::imshow("colour_tracker", pixels);
}

void run(const parser::CmdLineParser& parser) {
    const bool isShown = parser.getValueBool("show");
    const int particles = parser.value<int>("particles").value_or(0), camera = parser.value<int>("camera").value_or(-1);
    if (parser.isSet("input") == parser.isSet("camera"))
        throw std::runtime_error("give either -input or -camera");
    if (particles < 1 || camera < 0)
        throw std::runtime_error("-particles expects an integer >= 1, -camera one >= 0");
    if (isShown && std::getenv("DISPLAY") == nullptr)
        throw std::runtime_error("-show needs a display");
    const auto source = parser.isSet("camera") ? video::FrameSource::openCamera(camera)
                                               : video::FrameSource::open(parser.getValue("input"));
    cvdata::Image frame;
    if (!source->read(frame))
        throw std::runtime_error("no frame of the input can be decoded");
    const cv::Rect box = startBox(parser.getValue("box"), isShown, frame);
    cv::Mat hsv;
    cv::cvtColor(matView(frame), hsv, cv::COLOR_BGR2HSV);
    const cvdata::ColourHist2d wanted = coloursOf(hsv, box);
    State state(cvdata::VectorPose(4), 2);
    state.setPoseData(math::Vector::of(box.x + box.width / 2.0, box.y + box.height / 2.0, box.width, box.height));
    const double extent = std::sqrt(box.area()), still = extent / 100;
    ParticleFilter filter(state, static_cast<std::size_t>(particles),
                          math::Vector::of(still, still, still, still, extent / 2, extent / 2, still, still),
                          math::Vector::of(2 * extent, 2 * extent, extent / 5, extent / 5));
    std::cout << "frame,time,x,y,width,height,effective\n";
    do {
        cv::cvtColor(matView(frame), hsv, cv::COLOR_BGR2HSV);
        filter.predict(source->time());
        filter.correct([&](const State& particle) {
            const cv::Rect place = boxOf(particle, hsv.size());
            const double distance = place.empty() ? 1.0 : bhattacharyyaDistance(coloursOf(hsv, place), wanted);
            return std::exp(-20.0 * distance * distance);  // the paper's lambda
        });
        const cv::Rect found = boxOf(filter.state(), hsv.size());
        std::cout << cv::format("%d,%.4f,%d,%d,%d,%d,%.0f\n", source->number(), source->time(), found.x, found.y,
                                found.width, found.height, filter.effectiveParticles());
        if (isShown)
            show(frame, filter, found);
    } while ((!isShown || (cv::waitKey(1) & 0xFF) != 27) && source->read(frame));  // Escape
}

}  // namespace

int main(int argc, char** argv) {
    cv::utils::logging::setLogLevel(cv::utils::logging::LOG_LEVEL_SILENT);
    parser::CmdLineParser parser(argc, argv);
    parser.setAppDescription("Follows an object by its colours and prints where it is in each frame");
    parser.addOption("input", " video or directory of images", "", false);
    parser.addOption("camera", " number of a camera to use instead; the first is 0", "0", false);
    parser.addOption("box", " x,y,width,height of the object in the first frame", "", false);
    parser.addOption("particles", " number of particles", "500", false);
    parser.addFlag("show", " show the frames, and draw the box with the mouse if there is no -box; Escape quits");
    try {
        if (!parser.unknownWords().empty())
            throw std::runtime_error("unknown option " + parser.unknownWords().front() + ", see -help");
        parser.parse();
        run(parser);
    } catch (const std::exception& error) {
        std::cerr << "colour_tracker: " << error.what() << std::endl;
        return 1;
    }
}
