/// @file
/// Command line, files and the data directory; shows pieces of the reference.

#include <tarvos/core/Exception.h>
#include <tarvos/core/parser/CmdLineParser.h>
#include <tarvos/core/util/Filesystem.h>
#include <tarvos/core/util/Resources.h>

#include <fstream>
#include <iostream>

using tarvos::core::parser::CmdLineParser;
using tarvos::core::util::Filesystem;
using tarvos::core::util::Resources;

namespace {

int parseFrames(int argc, char** argv) {
    //! [parser]
    CmdLineParser parser(argc, argv);
    parser.setAppDescription("Face tracking demo");
    parser.addFlag("mirror", "mirror the picture");
    parser.addOption("frames", "number of frames", "100", false);
    for (const std::string& word : parser.unknownWords())
        std::cerr << "unknown option " << word << ", see -help" << std::endl;
    parser.parse();
    const int frames = parser.value<int>("frames").value_or(100);
    //! [parser]
    return frames;
}

int find() {
    //! [resources]
    const Resources resources("", "skin_tracker");
    const std::string video = resources.findFile("hand.mp4");
    if (video.empty())
        return 1;  // neither here nor in the data directory
    //! [resources]
    return 0;
}

void backUp() {
    //! [files]
    for (const std::string& name : Filesystem::ls("frames", ".png"))
        Filesystem::cp("frames/" + name, "backup/" + name);
    //! [files]
}

int saveTrack() {
    //! [exception]
    try {
        Filesystem::cp("track.csv", "backup/track.csv");
    } catch (const tarvos::core::Exception&) {
        return 1;  // on standard error: "Exception Msg: Filesystem exception: cp(track.csv, ..."
    }
    //! [exception]
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    Filesystem::mkdir("frames");
    Filesystem::rm("backup");
    Filesystem::mkdir("backup");
    std::ofstream("frames/1.png") << "a picture";
    backUp();
    std::cout << parseFrames(argc, argv) << " frames; found: " << find() << std::endl;
    return Filesystem::exists("backup/1.png") && saveTrack() == 1 ? 0 : 1;
}
