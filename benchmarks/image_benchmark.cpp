/// @file
/// Copies of an Image beside cv::Mat's and the limit, a copy of the bytes.

#include "core/cvdata/Image.h"
#include "core/cvdata/TiledImage.h"

#include <benchmark/benchmark.h>
#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>

#include <cstdio>
#include <cstring>
#include <vector>

namespace {

using tarvos::core::cvdata::Image;
using tarvos::core::cvdata::TiledImage;

constexpr int WIDTH = 640;
constexpr int HEIGHT = 480;
constexpr std::size_t BYTES = std::size_t{3} * WIDTH * HEIGHT;

Image picture() {
    Image image(WIDTH, HEIGHT, Image::CHANNELS_BGR, Image::BITS_8U);
    std::memset(image.imageBuffer(), 7, BYTES);
    return image;
}

void imageAssign(benchmark::State& state) {
    const Image source = picture();
    Image target = picture();
    for (auto _ : state) {
        target = source;
        benchmark::ClobberMemory();
    }
}
void matCopyTo(benchmark::State& state) {
    const cv::Mat source(HEIGHT, WIDTH, CV_8UC3, cv::Scalar::all(7));
    cv::Mat target = source.clone();
    for (auto _ : state) {
        source.copyTo(target);
        benchmark::ClobberMemory();
    }
}
void memoryCopy(benchmark::State& state) {
    const std::vector<unsigned char> source(BYTES, 7);
    std::vector<unsigned char> target(BYTES);
    for (auto _ : state) {
        std::memcpy(target.data(), source.data(), BYTES);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(imageAssign);
BENCHMARK(matCopyTo);
BENCHMARK(memoryCopy);

void imageClone(benchmark::State& state) {
    const Image source = picture();
    for (auto _ : state)
        delete source.clone();
}
void matClone(benchmark::State& state) {
    const cv::Mat source(HEIGHT, WIDTH, CV_8UC3, cv::Scalar::all(7));
    for (auto _ : state)
        benchmark::DoNotOptimize(source.clone());
}
BENCHMARK(imageClone);
BENCHMARK(matClone);

void imageMove(benchmark::State& state) {
    Image a = picture();
    Image b;
    for (auto _ : state) {
        b = std::move(a);
        a = std::move(b);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(imageMove);

/// 16 cells of 160 x 120 each.
void tiledSetCell(benchmark::State& state) {
    TiledImage mosaic(4, 4, 160, 120, Image::CHANNELS_BGR, Image::BITS_8U);
    Image cell(160, 120, Image::CHANNELS_BGR, Image::BITS_8U);
    for (auto _ : state)
        for (std::size_t i = 0; i < 16; ++i)
            mosaic.setCellImage(i / 4, i % 4, &cell);
}
void matCopyToCell(benchmark::State& state) {
    cv::Mat mosaic(HEIGHT, WIDTH, CV_8UC3);
    const cv::Mat cell(120, 160, CV_8UC3, cv::Scalar::all(7));
    for (auto _ : state)
        for (int i = 0; i < 16; ++i)
            cell.copyTo(mosaic(cv::Rect(i % 4 * 160, i / 4 * 120, 160, 120)));
}
BENCHMARK(tiledSetCell);
BENCHMARK(matCopyToCell);

/// A temporary file with a PNG in it.
class Png {
public:
    Png() { cv::imwrite(path, cv::Mat(HEIGHT, WIDTH, CV_8UC3, cv::Scalar(20, 100, 200))); }
    ~Png() { std::remove(path); }
    const char* path = "/tmp/tarvos_image_benchmark.png";
};

void imageLoad(benchmark::State& state) {
    const Png png;
    for (auto _ : state)
        benchmark::DoNotOptimize(Image(std::string(png.path)));
}
void matImread(benchmark::State& state) {
    const Png png;
    for (auto _ : state)
        benchmark::DoNotOptimize(cv::imread(png.path));
}
BENCHMARK(imageLoad)->Unit(benchmark::kMicrosecond);
BENCHMARK(matImread)->Unit(benchmark::kMicrosecond);

}  // namespace
