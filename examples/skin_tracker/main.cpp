/// @file
/// Tracks a hand in a video or in a directory of images.

#include "FrameSource.h"
#include "Progress.h"
#include "Recorder.h"
#include "tracking/Tracker.h"

#include <opencv2/highgui.hpp>
#include <tarvos/core/Exception.h>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/core/parser/CmdLineParser.h>
#include <tarvos/core/util/Resources.h>
#ifdef TARVOS_WITH_OPENGL
#include <tarvos/core/SystemManager.h>
#endif

#include <X11/Xlib.h>
#include <algorithm>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <iostream>
#include <limits>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

namespace {

using namespace skin_tracker;
using tarvos::core::cvdata::Image;
using tarvos::core::parser::CmdLineParser;

/// The first SIGINT or SIGTERM, 0 before; a second one kills.
volatile std::sig_atomic_t interruption = 0;

void recordInterruptions() {
    struct sigaction action {};
    action.sa_handler = [](int signal) { interruption = signal; };
    action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

/// Throws if there is no display: OpenCV's window system would end the process.
void requireDisplay() {
    Display* display = XOpenDisplay(nullptr);
    if (display == nullptr)
        throw std::runtime_error("-show needs a display");
    XCloseDisplay(display);
}

/// The value of option @p name; throws unless it is a whole number between @p least and @p most.
int parseInt(const CmdLineParser& parser, const std::string& name, int least,
             int most = std::numeric_limits<int>::max()) {
    const std::optional<int> number = parser.value<int>(name);
    if (!number || *number < least || *number > most)
        throw std::runtime_error("-" + name + " takes a whole number from " + std::to_string(least) +
                                 (most == std::numeric_limits<int>::max() ? " up" : " to " + std::to_string(most)) +
                                 ", not \"" + parser.getValue(name) + "\"");
    return *number;
}

/// The path of the input that was named: itself, or in the data directory.
std::string findInput(const CmdLineParser& parser) {
    std::string name = parser.getValue("input");
    if (name.empty())
        throw std::runtime_error("-input takes the name of a video or a directory");
    if (std::filesystem::exists(name))
        return name;
    std::string found = tarvos::core::util::Resources("", "skin_tracker").findFile(name);
    if (found.empty())
        throw std::runtime_error("there is no " + name);
    return found;
}

std::unique_ptr<FrameSource> openSource(const CmdLineParser& parser) {
    if (parser.isSet("camera"))
        return FrameSource::openCamera(parseInt(parser, "camera", 0));
    const std::string input = findInput(parser);
    std::error_code none;
    if (std::filesystem::equivalent(input, parser.getValue("output"), none))
        throw std::runtime_error("the output directory is the input");
    return FrameSource::open(input);
}

/// Tracks to the end of the input, the last frame wanted, or the first signal. Returns the frames per second.
double track(const CmdLineParser& parser, FrameSource& source, Recorder& recorder) {
    const int step = parseInt(parser, "step", 1);
    const int most = parseInt(parser, "frames", 0);
    Tracker tracker(parseInt(parser, "order", 2, 4));
    const bool isShown = parser.getValueBool("show");
    if (isShown)
        requireDisplay();
    const int all = source.frameCount() / step + (source.frameCount() % step != 0 ? 1 : 0);
    Progress progress(most > 0 && all > 0 ? std::min(most, all) : all);
    Image frame;
    int number = 0;
    bool isEscaped = false;
    const auto isDone = [&] { return isEscaped || interruption != 0 || (most > 0 && recorder.frames() == most); };
    for (; !isDone() && source.read(frame); ++number) {
        if (number % step != 0)
            continue;
        const double time = number / source.frameRate();
        tracker.process(frame, time);
        recorder.add(number, time, tracker, frame);
        if (isShown) {
            cv::imshow("skin_tracker", matView(frame));
            isEscaped = (cv::waitKey(1) & 0xFF) == 27;  // Escape
        }
        progress.step();
    }
    if (recorder.frames() == 0 && interruption == 0)
        throw std::runtime_error("no frame of the input can be decoded");
    if (!isDone() && number < source.frameCount())
        std::cerr << cv::format("skin_tracker: the input has %d frames, %d could be decoded\n", source.frameCount(),
                                number);
    return progress.framesPerSecond();
}

/// Runs the command line. Returns the signal that ended it early, 0 for none.
int run(const CmdLineParser& parser) {
    if (!parser.unknownWords().empty())
        throw std::runtime_error("unknown option " + parser.unknownWords().front() + ", see -help");
#ifdef TARVOS_WITH_OPENGL
    if (parser.getValueBool("checkgpu"))
        tarvos::core::SystemManager::instance().initOpenGLContext(64, 64, 0, 0, "skin_tracker", true);
#endif
    const auto source = openSource(parser);
    recordInterruptions();
    const std::string output = parser.getValue("output");
    Recorder recorder(output, parser.getValueBool("video") ? source->frameRate() / parseInt(parser, "step", 1) : 0.0);
    const double framesPerSecond = track(parser, *source, recorder);

    std::string summary = std::to_string(recorder.frames()) + " frames" +
                          (interruption != 0 ? ", then interrupted" : "") + "; hand found in " +
                          std::to_string(recorder.found()) + "; " + std::to_string(std::lround(framesPerSecond)) +
                          " frames a second\n";
    if (recorder.frames() > 0)
        for (const std::string& file : recorder.publish())
            summary += file + "\n";
    if (recorder.frames() > 0)
        summary += "plot: gnuplot -c '" PLOT_SCRIPT "' '" + output + "/track.csv' '" + output + "/track.png'\n";
    std::cout << summary << std::flush;
    return interruption;
}

}  // namespace

int main(int argc, char** argv) {
    CmdLineParser parser(argc, argv);
    parser.setAppDescription("Tracks the skin region of a hand and arm in a video or in a directory of images");
#ifdef TARVOS_WITH_OPENGL
    parser.addFlag("checkgpu", "create an OpenGL context and print what the GPU can do first");
#endif
    parser.addFlag("video", "write the annotated video track.avi as well");
    parser.addOption("input", "video or directory, searched for in the data directory too", "", false);
    parser.addOption("camera", "number of a camera to use instead; the first is 0", "", false);
    parser.addFlag("show", "show the frames while they are tracked; Escape quits");
    parser.addOption("output", "directory for the results", "skin_tracker_output", false);
    parser.addOption("step", "use every n-th frame", "1", false);
    parser.addOption("frames", "use at most this many frames, 0 for all", "0", false);
    parser.addOption("order", "order of the state: 2 with velocity, 3 with acceleration, 4 with jerk", "2", false);
    parser.parse();
    try {
        const int signal = run(parser);
        return signal == 0 ? 0 : 128 + signal;
    } catch (const tarvos::core::Exception&) {  // which reports itself
    } catch (const std::exception& error) {
        std::cerr << "skin_tracker: " << error.what() << std::endl;
    }
    return 1;
}
