/// @file
/// Tracks a hand in a video or in a directory of images.

#include "FrameSource.h"
#include "Interruption.h"
#include "Progress.h"
#include "Recorder.h"
#include "Tracker.h"
#include "Window.h"

#include <tarvos/core/Exception.h>
#include <tarvos/core/parser/CmdLineParser.h>
#include <tarvos/core/util/Resources.h>
#ifdef TARVOS_WITH_OPENGL
#include <tarvos/core/SystemManager.h>
#endif

#include <charconv>
#include <cmath>
#include <filesystem>
#include <iostream>
#include <limits>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace skin_tracker;
using tarvos::core::cvdata::Image;
using tarvos::core::parser::CmdLineParser;
using tarvos::core::util::Resources;

/// The whole number that option @p name holds; throws unless it lies between @p least and @p most.
int numberOf(const CmdLineParser& parser, const std::string& name, int least,
             int most = std::numeric_limits<int>::max()) {
    const std::string text = parser.getValue(name);
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < least || number > most)
        throw std::runtime_error("-" + name + " takes a whole number from " + std::to_string(least) +
                                 (most == std::numeric_limits<int>::max() ? " up" : " to " + std::to_string(most)) +
                                 ", not \"" + text + "\"");
    return number;
}

void rejectUnknown(const std::vector<std::string>& words) {
    if (words.empty())
        return;
    std::string named = words.size() == 1 ? "unknown option" : "unknown options";
    for (const std::string& word : words)
        named += " " + word;
    throw std::runtime_error(named + ", see -help");
}

void checkGpu() {
#ifdef TARVOS_WITH_OPENGL
    tarvos::core::SystemManager::instance().initOpenGLContext(64, 64, 0, 0, "skin_tracker", true);
#else
    throw std::runtime_error("-checkgpu needs a library built with OpenGL");
#endif
}

/// The path of the input that is asked for: itself, or in the data directory.
std::string inputOf(const CmdLineParser& parser) {
    std::string name = parser.getValue("input");
    if (name.empty())
        throw std::runtime_error("-input takes the name of a video or a directory");
    if (std::filesystem::exists(name))
        return name;
    std::string found = Resources("", "skin_tracker").findFile(name);
    if (found.empty())
        throw std::runtime_error("there is no " + name);
    return found;
}

/// Loads the skin model without its print-out.
Tracker trackerOf(int order) {
    std::streambuf* output = std::cout.rdbuf(nullptr);
    Tracker tracker(order);
    std::cout.rdbuf(output);
    std::cout.clear();
    return tracker;
}

std::unique_ptr<FrameSource> sourceOf(const CmdLineParser& parser) {
    if (parser.isSet("camera"))
        return FrameSource::openCamera(numberOf(parser, "camera", 0));
    const std::string input = inputOf(parser);
    std::error_code none;
    if (std::filesystem::equivalent(input, parser.getValue("output"), none))
        throw std::runtime_error("the output directory is the input");
    return FrameSource::open(input);
}

/// Tracks to the end of the input or of what is asked for, or to the first signal. How many frames a second that were.
double track(const CmdLineParser& parser, FrameSource& source, Recorder& recorder, const Interruption& interruption) {
    const int step = numberOf(parser, "step", 1);
    const int most = numberOf(parser, "frames", 0);
    Tracker tracker = trackerOf(numberOf(parser, "order", 2, 4));
    std::optional<Window> window;
    if (parser.getValueBool("show"))
        window.emplace();
    const int all = (source.frameCount() + step - 1) / step;
    Progress progress(most > 0 && all > 0 ? std::min(most, all) : all);
    Image frame;
    int number = 0;
    bool isEscaped = false;
    const auto isOver = [&] {
        return isEscaped || interruption.signal() != 0 || (most > 0 && recorder.frames() == most);
    };
    for (; !isOver() && source.read(frame); ++number) {
        if (number % step != 0)
            continue;
        const double time = number / source.frameRate();
        tracker.process(frame, time);
        recorder.add(number, time, tracker, frame);
        isEscaped = window && !window->show(frame);
        progress.step();
    }
    if (recorder.frames() == 0 && interruption.signal() == 0)
        throw std::runtime_error(std::string("no frame of the ") + source.kind() + " can be decoded");
    if (!isOver() && number < source.frameCount())
        std::cerr << std::string("skin_tracker: the ") + source.kind() + " says " +
                         std::to_string(source.frameCount()) + " frames, " + std::to_string(number) +
                         " could be decoded\n";
    return progress.framesPerSecond();
}

/// Does what the command line asks for; the signal that ended it early, 0 for none.
int run(const CmdLineParser& parser) {
    rejectUnknown(parser.unknownWords());
    if (parser.getValueBool("checkgpu"))
        checkGpu();
    const auto source = sourceOf(parser);
    const Interruption interruption;
    Recorder recorder(parser.getValue("output"),
                      parser.getValueBool("video") ? source->frameRate() / numberOf(parser, "step", 1) : 0.0);
    const double framesPerSecond = track(parser, *source, recorder, interruption);

    std::string summary = std::to_string(recorder.frames()) + " frames" +
                          (interruption.signal() != 0 ? ", then interrupted" : "") + "; hand found in " +
                          std::to_string(recorder.found()) + "; " + std::to_string(std::lround(framesPerSecond)) +
                          " frames a second\n";
    if (recorder.frames() > 0)
        for (const std::string& file : recorder.publish())
            summary += file + "\n";
    std::cout << summary << std::flush;
    return interruption.signal();
}

}  // namespace

int main(int argc, char** argv) {
    CmdLineParser parser(argc, argv);
    parser.setAppDescription("Tracks the skin region of a hand and arm in a video or in a directory of images");
    parser.addFlag("checkgpu", "create an OpenGL context and tell what the GPU can do first");
    parser.addFlag("video", "write the annotated video track.avi too");
    parser.addOption("input", "video or directory, looked for in the data directory too", "", false);
    parser.addOption("camera", "number of a camera to use instead, the first being 0", "", false);
    parser.addFlag("show", "show the frames while they are tracked; Escape ends it");
    parser.addOption("output", "directory for the results", "skin_tracker_output", false);
    parser.addOption("step", "use every n-th frame", "1", false);
    parser.addOption("frames", "use at most so many frames, 0 for all", "0", false);
    parser.addOption("order", "order of the state: 2 with velocity, 3 with acceleration", "2", false);
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
