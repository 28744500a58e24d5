/// @file
/// Images beside `cv::Mat` and OpenCV's loader.

#include "Comparison.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/core/cvdata/TiledImage.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <unistd.h>
#include <vector>

namespace {

using comparison::compare;
using tarvos::core::cvdata::Image;
using tarvos::core::cvdata::TiledImage;

constexpr int WIDTH = 640;
constexpr int HEIGHT = 480;
constexpr std::size_t BYTES = std::size_t{3} * WIDTH * HEIGHT;

void addCopies() {
    const auto source = std::make_shared<Image>(WIDTH, HEIGHT, Image::CHANNELS_BGR, Image::BITS_8U);
    const auto target = std::make_shared<Image>(WIDTH, HEIGHT, Image::CHANNELS_BGR, Image::BITS_8U);
    const cv::Mat pixels(HEIGHT, WIDTH, CV_8UC3, cv::Scalar::all(7));
    const cv::Mat copy = pixels.clone();
    std::memset(source->imageBuffer(), 7, BYTES);
    const auto limit = [source, target] { std::memcpy(target->imageBuffer(), source->imageBuffer(), BYTES); };
    compare(
        "Image assignment, 640x480", "cv::Mat::copyTo", 1.2, [=] { *target = *source; },
        [=]() mutable { pixels.copyTo(copy); }, limit);
    compare(
        "Image clone", "cv::Mat::clone", 1.2, [=] { delete source->clone(); },
        [=] { benchmark::DoNotOptimize(pixels.clone().data); });
}

/// Cells of an 8 x 8 mosaic of cells @p size pixels wide and high.
void addCells(int size) {
    const auto cells = static_cast<std::size_t>(size);
    const auto mosaic = std::make_shared<TiledImage>(8, 8, cells, cells, Image::CHANNELS_BGR, Image::BITS_8U);
    const auto cell = std::make_shared<Image>(size, size, Image::CHANNELS_BGR, Image::BITS_8U);
    const cv::Mat whole(8 * size, 8 * size, CV_8UC3);
    const cv::Mat part(size, size, CV_8UC3, cv::Scalar::all(7));
    compare(
        "setCellImage, " + std::to_string(size) + "x" + std::to_string(size) + "", "copyTo of a region", 1.2,
        [=] { mosaic->setCellImage(3, 5, cell.get()); },
        [=] { part.copyTo(whole(cv::Rect(5 * size, 3 * size, size, size))); });
}

/// A picture as a camera sees it: smooth, with some noise.
cv::Mat picture() {
    cv::Mat pixels(HEIGHT, WIDTH, CV_8UC3);
    cv::randu(pixels, 0, 255);
    cv::GaussianBlur(pixels, pixels, cv::Size(31, 31), 0);
    cv::Mat noise(pixels.size(), pixels.type());
    cv::randu(noise, 0, 6);
    return pixels + noise;
}

void addFiles(const std::string& directory) {
    const cv::Mat pixels = picture();
    for (const auto& [ending, goal] : {std::pair(".bmp", 1.5), {".png", 1.05}, {".jpg", 1.03}}) {
        const std::string path = directory + "/picture" + ending;
        cv::imwrite(path, pixels);
        compare(
            std::string("Image from ") + ending + ", 640x480", "cv::imread", goal,
            [path] { benchmark::DoNotOptimize(Image(path).imageBuffer()); },
            [path] { benchmark::DoNotOptimize(cv::imread(path).data); });
    }
    const std::string missing = directory + "/missing.png";
    compare(
        "Image of a missing file", "cv::imread", 1.0, [missing] { benchmark::DoNotOptimize(Image(missing).width()); },
        [missing] { benchmark::DoNotOptimize(cv::imread(missing).data); });
}

}  // namespace

int main(int argc, char** argv) {
    std::string directory = (std::filesystem::temp_directory_path() / "tarvos-benchmark-XXXXXX").string();
    if (mkdtemp(directory.data()) == nullptr || std::freopen("/dev/null", "w", stderr) == nullptr)
        return 1;
    addCopies();
    addCells(16);
    addCells(160);
    addFiles(directory);
    const int status = comparison::run(argc, argv);
    std::filesystem::remove_all(directory);
    return status;
}
