#pragma once

#include <tarvos/core/parser/CmdLineParser.h>

#include <limits>
#include <optional>
#include <string>

namespace skin_tracker {

/// What the command line asks for.
struct Options {
    std::string input;          ///< as it is named; empty for a camera
    std::optional<int> camera;  ///< its number
    std::string output;
    double rate = 0.0;  ///< of a directory's images, per second
    int step = 1;
    int frames = 0;  ///< 0 for all
    int order = 2;
    bool isVideoWanted = false;
    bool isShown = false;
    bool isGpuChecked = false;

    /// Reads the command line; exits after `-help`. Throws `std::runtime_error` for what is not valid.
    static Options parse(int argc, char** argv);
};

/// @p text with its control characters replaced, so that a name cannot pose as a line of this program.
std::string printable(std::string text);

/// @p text as a word of a shell's command line.
std::string shellWord(const std::string& text);

}  // namespace skin_tracker
