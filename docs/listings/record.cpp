/// @file
/// The program of the guide "Show, record, filter".

#include <opencv2/highgui.hpp>
#include <opencv2/imgproc.hpp>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/core/cvdata/pose/VectorPose.h>
#include <tarvos/video/FrameSource.h>
#include <tarvos/video/VideoFile.h>
#include <tarvos/vision/Histogram.h>
#include <tarvos/vision/KalmanFilter.h>
#include <tarvos/vision/ParticleFilter.h>
#include <tarvos/vision/Regions.h>

#include <cmath>
#include <cstdlib>
#include <iostream>

using namespace tarvos::vision;
using tarvos::core::State;
using tarvos::core::cvdata::ColourHist2d;
using tarvos::core::cvdata::Image;
using tarvos::core::cvdata::imageOf;
using tarvos::core::cvdata::VectorPose;
using tarvos::math::Vector;

/// The colours of a part of a picture in hue, saturation and value.
ColourHist2d coloursOf(const cv::Mat& hsv, const cv::Rect& part) {
    ColourHist2d colours(12, 12, 4);
    addPixels(colours, hsv(part), {}, HSV_LIMITS);
    return colours;
}

/// The box of the wanted size around a state's position, clipped to the picture.
cv::Rect boxAround(const State& state, const cv::Size& size, const cv::Size& picture) {
    const Vector place = state.getPoseData();
    const cv::Point corner(cvRound(place[0]) - size.width / 2, cvRound(place[1]) - size.height / 2);
    return cv::Rect(corner, size) & cv::Rect({}, picture);
}

int main(int argc, char** argv) try {
    if (argc != 7)
        throw std::runtime_error("usage: record INPUT X Y WIDTH HEIGHT OUTPUT.avi");
    const cv::Rect box(std::atoi(argv[2]), std::atoi(argv[3]), std::atoi(argv[4]),
                       std::atoi(argv[5]));
    const auto source = tarvos::video::FrameSource::open(argv[1]);
    Image frame;
    if (!source->read(frame) || (box & cv::Rect(0, 0, frame.width(), frame.height())) != box)
        throw std::runtime_error("no frame can be read, or the box is not inside the first");
    cv::Mat hsv;
    cv::cvtColor(matView(frame), hsv, cv::COLOR_BGR2HSV);
    const ColourHist2d wanted = coloursOf(hsv, box);

    State start(VectorPose(2), 2);  // the centre and its velocity, in pixels and seconds
    start.setPoseData(Vector::of(box.x + box.width / 2.0, box.y + box.height / 2.0));
    KalmanFilter kalman(start, Vector::of(500, 500), Vector::of(5, 5));
    ParticleFilter particles(start, 500, Vector::of(5, 5, 50, 50), Vector::of(500, 500));

    tarvos::video::VideoFile video(argv[6], source->frameRate());
    do {
        cv::cvtColor(matView(frame), hsv, cv::COLOR_BGR2HSV);
        const cv::Mat likely =
            backProject(wanted, hsv, HSV_LIMITS);  // 255 at its most common colour

        kalman.predict(source->time());
        const Regions regions(likely > 127, box.area() / 10.0);
        const Regions::BlobInfo* nearest = nullptr;
        double distance = 3.0;  // standard deviations: what is further away is not the object
        for (const Regions::BlobInfo& region : regions.blobs().mBlobs)
            if (kalman.mahalanobisDistance(region.mVector) < distance) {
                nearest = &region;
                distance = kalman.mahalanobisDistance(region.mVector);
            }
        if (nearest != nullptr)
            kalman.correct(nearest->mVector);

        particles.predict(source->time());
        particles.correct([&](const State& particle) {
            const cv::Rect place = boxAround(particle, box.size(), hsv.size());
            const double difference =
                place.empty() ? 1.0 : bhattacharyyaDistance(coloursOf(hsv, place), wanted);
            return std::exp(-20.0 * difference * difference);
        });

        const cv::Mat pixels = matView(frame);
        cv::rectangle(pixels, boxAround(kalman.state(), box.size(), hsv.size()), {255, 64, 0}, 2);
        cv::rectangle(pixels, boxAround(particles.state(), box.size(), hsv.size()), {0, 220, 0}, 2);
        if (source->number() == 30 &&
            (!frame.save("boxes.png") || !imageOf(likely).save("likely.png")))
            return 1;
        video.add(frame);
        if (std::getenv("DISPLAY") != nullptr) {
            cv::imshow("record", pixels);
            if (cv::waitKey(1) == 27)  // Escape
                break;
        }
    } while (source->read(frame));
    video.finish();
    std::cout << "Kalman " << kalman.state() << ", particles " << particles.state() << std::endl;
} catch (const std::exception& error) {
    std::cerr << "record: " << error.what() << std::endl;
    return 1;
}
