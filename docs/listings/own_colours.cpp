/// @file
/// The program of the guide "Colours of your own".

#include <opencv2/imgproc.hpp>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/video/FrameSource.h>
#include <tarvos/vision/Mixture.h>
#include <tarvos/vision/Regions.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <vector>

using namespace tarvos::vision;
using tarvos::core::cvdata::ColorGMM;
using tarvos::core::cvdata::Image;

/// Hue, saturation and value of BGR pixels.
cv::Mat toHsv(const cv::Mat& pixels) {
    cv::Mat hsv;
    cv::cvtColor(pixels, hsv, cv::COLOR_BGR2HSV);
    return hsv;
}

/// The density that 19 of 20 pixels of the object reach.
float thresholdOf(const ColorGMM& model, const cv::Mat& object) {
    const cv::Mat densities = density(model, object);
    std::vector<float> sorted(densities.begin<float>(), densities.end<float>());
    std::sort(sorted.begin(), sorted.end());
    return sorted[sorted.size() / 20];
}

int main(int argc, char** argv) try {
    if (argc != 6) {
        std::cerr << "usage: own_colours INPUT X Y WIDTH HEIGHT" << std::endl;
        return 2;
    }
    const cv::Rect box(std::atoi(argv[2]), std::atoi(argv[3]), std::atoi(argv[4]),
                       std::atoi(argv[5]));
    const auto source = tarvos::video::FrameSource::open(argv[1]);
    Image frame;
    if (!source->read(frame) || (box & cv::Rect(0, 0, frame.width(), frame.height())) != box)
        throw std::runtime_error("no frame can be read, or the box is not inside the first");

    const cv::Mat object = toHsv(matView(frame)(box));
    // A row for each pixel, a column for each channel, of which hue and saturation are learned.
    const cv::Mat samples = object.reshape(1, box.area()).colRange(0, 2);
    const ColorGMM model = fitMixture(samples, 2);
    for (const auto& component : model.mMixtures)
        std::cout << component->mWeight << " of the pixels around " << component->mMean
                  << std::endl;

    const float threshold = thresholdOf(model, object);
    do {
        const cv::Mat mask = density(model, toHsv(matView(frame))) >= threshold;
        const Regions regions(mask, box.area() / 10.0);
        if (const Regions::BlobInfo* region = regions.largest())
            std::cout << "frame " << source->number() << ": " << boxOf(*region) << std::endl;
    } while (source->read(frame));
} catch (const std::exception& error) {
    std::cerr << "own_colours: " << error.what() << std::endl;
    return 1;
}
