/// @file
/// Tracks a hand in a video or in a directory of images.

#include "Annotation.h"
#include "Options.h"
#include "Progress.h"
#include "Recorder.h"
#include "tracking/Tracker.h"

#include <opencv2/core/utils/logger.hpp>
#include <opencv2/highgui.hpp>
#include <tarvos/core/Exception.h>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/core/util/Resources.h>
#include <tarvos/video/FrameSource.h>
#ifdef TARVOS_WITH_OPENGL
#include <tarvos/core/SystemManager.h>
#endif

#include <X11/Xlib.h>
#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace {

using namespace skin_tracker;
using tarvos::core::cvdata::Image;
using tarvos::video::FrameSource;

namespace fs = std::filesystem;

/// The signal that ends a run early, 0 before; the same once more kills.
volatile std::sig_atomic_t interruption = 0;

void recordInterruptions() {
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action {};
        if (sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN)
            continue;  // as under nohup
        action.sa_handler = [](int number) { interruption = number; };
        action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_RESTART;
        sigaction(signal, &action, nullptr);
    }
}

/// Opens the standard streams that are closed: a file that took the number of one would get what is printed.
void openStandardStreams() {
    int descriptor = 0;
    do
        descriptor = open("/dev/null", O_RDWR);
    while (descriptor >= 0 && descriptor <= STDERR_FILENO);
    close(descriptor);
}

/// OpenCV and FFmpeg write nothing about an input: this program and the library do.
void keepLibrariesQuiet() {
    cv::utils::logging::setLogLevel(cv::utils::logging::LOG_LEVEL_SILENT);
    setenv("OPENCV_FFMPEG_LOGLEVEL", "-8", 0);
}

/// Throws if there is no display: OpenCV's window system would exit.
void requireDisplay() {
    Display* display = XOpenDisplay(nullptr);
    if (display == nullptr)
        throw std::runtime_error("-show needs a display");
    XCloseDisplay(display);
}

/// The path of the input that was named: itself, or in the data directory.
std::string findInput(const std::string& name) {
    std::error_code unknown;
    if (fs::exists(fs::symlink_status(name, unknown)))
        return name;
    const tarvos::core::util::Resources resources("", "skin_tracker");
    std::string found = resources.findFile(name);
    if (found.empty())
        throw std::runtime_error(
            name + ": not found" +
            (resources.getDataDirPath().empty()
                 ? "; to search a data directory, set TARVOSDATADIR to the folder above the folder "
                   "\"data\" that holds the file DATA_DIR_ID.txt"
                 : ", nor in " + resources.getDataDirPath()));
    return found;
}

/// Throws if @p input, or an image in it, is one of the files that this run replaces or removes.
void requireDistinct(const std::string& input, const std::string& output) {
    std::error_code none;
    if (fs::equivalent(input, output, none))
        throw std::runtime_error("input and output must differ");
    std::vector<std::string> files{input};
    for (const fs::directory_entry& entry : fs::directory_iterator(input, none))  // if it is one
        files.push_back(entry.path());
    for (const std::string& file : files)
        if (Recorder::replaces(file, output))
            throw std::runtime_error(file + " would be replaced: choose another -output");
}

std::unique_ptr<FrameSource> openSource(const Options& options) {
    if (options.camera)
        return FrameSource::openCamera(*options.camera);
    const std::string input = findInput(options.input);
    requireDistinct(input, options.output);
    return FrameSource::open(input, options.rate);
}

/// Tracks to the end of the input, the last frame wanted, or the first signal. Returns the frames per second.
double track(const Options& options, FrameSource& source, Recorder& recorder) {
    const int count = source.frameCount();
    const int expected = count / options.step + (count % options.step != 0 ? 1 : 0);
    Tracker tracker(options.order);
    Annotation annotation;
    Progress progress(options.frames > 0 && expected > 0 ? std::min(options.frames, expected) : expected);
    Image frame;
    int decoded = 0;
    bool isEscaped = false;
    const auto isDone = [&] {
        return isEscaped || interruption != 0 || (options.frames > 0 && recorder.frames() == options.frames);
    };
    while (!isDone() && source.read(frame)) {
        ++decoded;
        if (source.number() % options.step != 0)
            continue;
        tracker.process(frame, source.time());
        annotation.draw(tracker, frame);
        recorder.add(source.number(), source.time(), tracker, frame);
        if (options.isShown) {
            cv::imshow("skin_tracker", matView(frame));
            isEscaped = (cv::waitKey(1) & 0xFF) == 27;  // Escape
        }
        progress.step();
    }
    if (recorder.frames() == 0 && interruption == 0)
        throw std::runtime_error("no frame of the input can be decoded");
    if (!isDone() && decoded < count)
        std::cerr << cv::format("skin_tracker: the input has %d frames, %d could be decoded\n", count, decoded);
    return progress.framesPerSecond();
}

/// Runs the command line. Returns the signal that ended it early, 0 for none.
int run(const Options& options) {
#ifdef TARVOS_WITH_OPENGL
    if (options.isGpuChecked)
        tarvos::core::SystemManager::instance().initOpenGLContext(64, 64, 0, 0, "skin_tracker", true);
#endif
    if (options.isShown)
        requireDisplay();
    const std::unique_ptr<FrameSource> source = openSource(options);
    recordInterruptions();
    Recorder recorder(options.output, options.isVideoWanted ? source->frameRate() / options.step : 0.0);
    const double framesPerSecond = track(options, *source, recorder);

    std::string summary = std::to_string(recorder.frames()) + " frames" +
                          (interruption != 0 ? ", then interrupted" : "") + "; hand found in " +
                          std::to_string(recorder.found()) + "; " + std::to_string(std::lround(framesPerSecond)) +
                          " frames a second\n";
    if (recorder.frames() > 0)
        for (const std::string& file : recorder.publish())
            summary += printable(file) + "\n";
    if (recorder.found() > 0)
        summary += "plot: gnuplot -c " + shellWord(PLOT_SCRIPT) + " " + shellWord(options.output + "/track.csv") + " " +
                   shellWord(options.output + "/track.png") + "\n";
    std::cout << summary << std::flush;
    return interruption;
}

}  // namespace

int main(int argc, char** argv) {
    openStandardStreams();
    keepLibrariesQuiet();
    try {
        const int signal = run(Options::parse(argc, argv));
        return signal == 0 ? 0 : 128 + signal;
    } catch (const tarvos::core::Exception&) {  // which reports itself
    } catch (const std::exception& error) {
        std::cerr << "skin_tracker: " + printable(error.what()) << std::endl;
    }
    return 1;
}
