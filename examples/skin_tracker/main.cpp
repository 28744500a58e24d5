/// @file
/// Tracks a hand in a video or in a directory of images.

#include "Annotation.h"
#include "FrameSource.h"
#include "Mosaic.h"
#include "Results.h"
#include "Tracker.h"
#include "core/Exception.h"
#include "core/parser/CmdLineParser.h"
#include "core/util/Resources.h"
#ifdef TARVOS_WITH_OPENGL
#include "core/SystemManager.h"
#endif

#include <opencv2/core/core_c.h>
#include <opencv2/videoio.hpp>

#include <charconv>
#include <iomanip>
#include <iostream>
#include <limits>
#include <locale>
#include <optional>
#include <sstream>
#include <stdexcept>

namespace {

using namespace skin_tracker;
using tarvos::core::cvdata::Image;
using tarvos::core::parser::CmdLineParser;
using tarvos::core::util::Resources;

constexpr int FRAMES_PER_PROGRESS_LINE = 100;

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

void checkGpu() {
#ifdef TARVOS_WITH_OPENGL
    tarvos::core::SystemManager::instance().initOpenGLContext(64, 64, 0, 0, "skin_tracker", true);
#else
    throw std::runtime_error("-checkgpu needs a library built with OpenGL");
#endif
}

/// track.csv, row by row.
class Table {
public:
    Table() {
        mText.imbue(std::locale::classic());
        mText << "frame,time,x,y,width,height,vx,vy,blobs,area,found\n" << std::fixed;
    }

    void add(int frame, double time, const Tracker& tracker) {
        mText << frame << ',' << std::setprecision(4) << time << std::setprecision(2);
        if (tracker.started()) {
            const MotionFilter& motion = tracker.motion();
            mText << ',' << motion.centre().x << ',' << motion.centre().y << ',' << motion.box().width << ','
                  << motion.box().height << ',' << motion.velocity().x << ',' << motion.velocity().y;
        } else {
            mText << ",,,,,,";
        }
        mText << ',' << tracker.blobs().dimension() << ',' << tracker.area() << ',' << tracker.found() << '\n';
    }

    std::string text() const { return mText.str(); }

private:
    std::ostringstream mText;
};

/// track.avi, frame by frame.
class Video {
public:
    Video(const std::string& path, double frameRate) : mPath(path), mFrameRate(frameRate) {}

    void add(const Image& frame) {
        const cv::Mat pixels = cv::cvarrToMat(frame.iplImage());
        if (!mWriter.isOpened() &&
            !mWriter.open(mPath, cv::VideoWriter::fourcc('M', 'J', 'P', 'G'), mFrameRate, pixels.size()))
            throw std::runtime_error("cannot write track.avi");
        // FFmpeg's conversion reads a few bytes past the last row, which here lie in one row more.
        mWithMargin.create(pixels.rows + 1, pixels.cols, pixels.type());
        pixels.copyTo(mWithMargin.rowRange(0, pixels.rows));
        mWriter.write(mWithMargin.rowRange(0, pixels.rows));
    }

    void finish() { mWriter.release(); }

private:
    std::string mPath;
    double mFrameRate;
    cv::VideoWriter mWriter;
    cv::Mat mWithMargin;
};

void run(const CmdLineParser& parser) {
    const int step = numberOf(parser, "step", 1);
    const int most = numberOf(parser, "frames", 0);
    const int order = numberOf(parser, "order", 2, 4);
    const bool withVideo = parser.getValueBool("video");
    if (parser.getValueBool("checkgpu"))
        checkGpu();

    const Resources resources("", "skin_tracker");
    const std::string input = resources.findFile(parser.getValue("input"));
    if (input.empty())
        throw std::runtime_error("there is no " + parser.getValue("input"));
    const auto source = FrameSource::open(input);
    Results results(parser.getValue("output"));

    Tracker tracker(order);
    Annotation annotation;
    Mosaic mosaic;
    Table table;
    std::optional<Video> video;
    if (withVideo)
        video.emplace(results.partOf("track.avi"), source->frameRate() / step);
    Image frame;
    int used = 0;
    for (int number = 0; (most == 0 || used < most) && (number % step == 0 ? source->read(frame) : source->skip());
         ++number) {
        if (number % step != 0)
            continue;
        const double time = number / source->frameRate();
        tracker.process(frame, time);
        table.add(number, time, tracker);
        annotation.follow(tracker);
        annotation.draw(tracker, frame);
        mosaic.add(frame);
        if (video)
            video->add(frame);
        if (++used % FRAMES_PER_PROGRESS_LINE == 0)
            std::cerr << "skin_tracker: " << used << " frames" << std::endl;
    }
    if (used == 0)
        throw std::runtime_error("no frame can be decoded in " + input);
    if (video)
        video->finish();
    results.write("track.csv", table.text());
    results.write("mosaic.png", mosaic.compose());
    results.publish();
}

}  // namespace

int main(int argc, char** argv) {
    CmdLineParser parser(argc, argv);
    parser.setAppDescription("Tracks a hand in a video or in a directory of images");
    parser.addFlag("checkgpu", "create an OpenGL context and tell what the GPU can do first");
    parser.addFlag("video", "write the annotated video track.avi too");
    parser.addOption("input", "video or directory, looked for in the data directory too", "", true);
    parser.addOption("output", "directory for the results", "skin_tracker_output", false);
    parser.addOption("step", "use every n-th frame", "1", false);
    parser.addOption("frames", "use at most so many frames, 0 for all", "0", false);
    parser.addOption("order", "order of the state: 2 with velocity, 3 with acceleration", "2", false);
    parser.parse();
    try {
        run(parser);
        return 0;
    } catch (const AlreadyReported&) {
    } catch (const tarvos::core::Exception&) {  // which reports itself
    } catch (const std::exception& error) {
        std::cerr << "skin_tracker: " << error.what() << std::endl;
    }
    return 1;
}
