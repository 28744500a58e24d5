#include "Options.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <stdexcept>

namespace skin_tracker {

namespace {

using tarvos::core::parser::CmdLineParser;

constexpr int MAX_INT = std::numeric_limits<int>::max();

[[noreturn]] void reject(const CmdLineParser& parser, const std::string& name, const std::string& expected) {
    throw std::runtime_error("-" + name + " expects " + expected + ", got \"" + parser.getValue(name) + "\"");
}

int intOf(const CmdLineParser& parser, const std::string& name, int min, int max = MAX_INT) {
    const std::optional<int> number = parser.value<int>(name);
    if (!number || *number < min || *number > max)
        reject(parser, name,
               "an integer " + (max == MAX_INT ? ">= " + std::to_string(min)
                                               : "from " + std::to_string(min) + " to " + std::to_string(max)));
    return *number;
}

// Descriptions begin with a blank: a value that fills its column would touch them.
void registerOptions(CmdLineParser& parser) {
    parser.setAppDescription("Tracks the skin region of a hand and arm in a video or in a directory of images");
#ifdef TARVOS_WITH_OPENGL
    parser.addFlag("checkgpu", " create an OpenGL context and print what the GPU can do first");
#endif
    parser.addFlag("video", " write the annotated video track.avi as well");
    parser.addFlag("show", " show the frames while they are tracked; Escape quits");
    parser.addOption("input", " video or directory, searched for in the data directory too", "", false);
    parser.addOption("camera", " number of a camera to use instead; the first is 0", "", false);
    parser.addOption("rate", " frames per second of a directory, whose images are read by name, f2 before f10", "25",
                     false);
    parser.addOption("output", " directory for the results", "skin_tracker_output", false);
    parser.addOption("step", " use every n-th frame", "1", false);
    parser.addOption("frames", " use at most this many frames, 0 for all", "0", false);
    parser.addOption("order", " order of the state: 2 with velocity, 3 with acceleration, 4 with jerk", "2", false);
}

}  // namespace

Options Options::parse(int argc, char** argv) {
    CmdLineParser parser(argc, argv);
    registerOptions(parser);
    if (!parser.unknownWords().empty())
        throw std::runtime_error("unknown option " + parser.unknownWords().front() + ", see -help");
    parser.parse();
    Options options;
    options.input = parser.getValue("input");
    if (parser.isSet("camera"))
        options.camera = intOf(parser, "camera", 0);
    if (options.camera && parser.isSet("input"))
        throw std::runtime_error("-input and -camera exclude each other");
    if (!options.camera && options.input.empty())
        throw std::runtime_error("-input expects the name of a video or a directory");
    options.output = parser.getValue("output");
    options.rate = parser.value<double>("rate").value_or(0.0);
    if (!(options.rate > 0.0 && options.rate <= std::numeric_limits<double>::max()))
        reject(parser, "rate", "a number > 0");
    options.step = intOf(parser, "step", 1);
    options.frames = intOf(parser, "frames", 0);
    options.order = intOf(parser, "order", 2, 4);
    options.isVideoWanted = parser.getValueBool("video");
    options.isShown = parser.getValueBool("show");
    options.isGpuChecked = parser.getValueBool("checkgpu");
    return options;
}

std::string printable(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return c < ' ' || c == 127; }, '?');
    return text;
}

std::string shellWord(const std::string& text) {
    const bool isPrintable = printable(text) == text;
    std::string word;
    for (const char c : text)
        if (c == '\'')
            word += R"('\'')";
        else if (!isPrintable && (c == '%' || c == '\\'))
            word += std::string(2, c);
        else
            word += printable({c})[0] == c ? std::string(1, c) : cv::format("\\%03o", c);
    return isPrintable ? "'" + word + "'" : "\"$(printf '" + word + "')\"";
}

}  // namespace skin_tracker
