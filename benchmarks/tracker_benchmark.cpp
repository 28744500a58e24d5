/// @file
/// How many frames a second the tracker of skin_tracker handles, decoding apart: 640 x 480 frames held in memory, a
/// skin-coloured ellipse in motion over grey noise. Beside it the least that any tracker by colour does: the
/// conversion to hue, saturation and value.

#include "Tracker.h"

#include <benchmark/benchmark.h>
#include <opencv2/core/core_c.h>
#include <opencv2/imgproc.hpp>

#include <vector>

namespace {

using tarvos::core::cvdata::Image;

constexpr double FRAME_RATE = 26.8;

std::vector<Image> sequence() {
    std::vector<Image> frames;
    for (int i = 0; i < 60; ++i) {
        frames.emplace_back(640, 480, Image::CHANNELS_BGR, Image::BITS_8U);
        cv::Mat pixels = cv::cvarrToMat(frames.back().iplImage());
        cv::randu(pixels, 150, 180);
        cv::ellipse(pixels, {320 + 3 * (i - 30), 240 + 2 * (i - 30)}, {90, 60}, 30, 0, 360, {110, 143, 201},
                    cv::FILLED);
    }
    return frames;
}

void trackerProcess(benchmark::State& state) {
    const std::vector<Image> frames = sequence();
    skin_tracker::Tracker tracker(2);
    std::size_t next = 0;
    // The first frames teach it the colours; forward and back, so that the motion has no jump.
    const auto process = [&] {
        const std::size_t place = next % (2 * frames.size() - 2);
        tracker.process(frames[place < frames.size() ? place : 2 * frames.size() - 2 - place],
                        static_cast<double>(next) / FRAME_RATE);
        ++next;
    };
    while (next < 20)
        process();
    for (auto _ : state)
        process();
    if (!tracker.found())
        state.SkipWithError("the ellipse is not tracked");
    state.counters["fps"] = benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(trackerProcess)->Unit(benchmark::kMillisecond)->UseRealTime();

void opencvToHsv(benchmark::State& state) {
    const std::vector<Image> frames = sequence();
    cv::Mat hsv;
    std::size_t next = 0;
    for (auto _ : state)
        cv::cvtColor(cv::cvarrToMat(frames[next++ % frames.size()].iplImage()), hsv, cv::COLOR_RGB2HSV);
    state.counters["fps"] = benchmark::Counter(static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(opencvToHsv)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
