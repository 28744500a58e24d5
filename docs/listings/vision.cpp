/// @file
/// The vision library; shows pieces of the reference.

#include <opencv2/imgproc.hpp>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/core/cvdata/pose/VectorPose.h>
#include <tarvos/vision/Histogram.h>
#include <tarvos/vision/KalmanFilter.h>
#include <tarvos/vision/Mixture.h>
#include <tarvos/vision/ParticleFilter.h>
#include <tarvos/vision/Regions.h>

#include <cmath>
#include <iostream>

using namespace tarvos::core::cvdata;
using namespace tarvos::vision;
using tarvos::core::State;
using tarvos::math::Vector;

int main() {
    Image frame(320, 240, Image::CHANNELS_BGR, Image::BITS_8U);
    matView(frame).setTo(cv::Scalar(180, 175, 170));
    matView(frame)(cv::Rect(100, 80, 60, 40)).setTo(cv::Scalar(110, 143, 201));

    //! [histogram]
    cv::Mat hsv;
    cv::cvtColor(matView(frame), hsv, cv::COLOR_BGR2HSV);
    ColourHist2d object(20, 16, 8);  // bins of hue, saturation and value
    addPixels(object, hsv(cv::Rect(100, 80, 60, 40)), {}, HSV_LIMITS);
    const cv::Mat likely =
        backProject(object, hsv, HSV_LIMITS);  // 255 where its colour is most common

    ColourHist2d everything(20, 16, 8);
    addPixels(everything, hsv, {}, HSV_LIMITS);
    std::cout << "distance " << bhattacharyyaDistance(object, everything) << std::endl;
    //! [histogram]

    //! [mixture]
    const cv::Mat skin = skinMask(matView(frame));  // by the built-in model

    cv::Mat samples;  // a model of one's own: a colour a row
    cv::Mat noisy = matView(frame).clone();
    cv::randn(noisy, cv::Scalar(110, 143, 201), cv::Scalar(5, 6, 7));
    noisy.reshape(1, noisy.rows * noisy.cols).convertTo(samples, CV_64F);
    const ColorGMM model = fitMixture(samples, 1);
    const cv::Mat densities = density(model, matView(frame));
    //! [mixture]

    //! [regions]
    const Regions regions(skin, 100.0);  // of at least 100 pixels
    if (const Regions::BlobInfo* region = regions.largest())
        std::cout << region->mField2 << " pixels in " << boxOf(*region) << std::endl;
    //! [regions]

    //! [kalman]
    State state(VectorPose(2), 2);  // x and y in pixels, and their velocities
    state.setPoseData(Vector::of(130, 100));
    KalmanFilter filter(
        state, Vector::of(200, 200),  // pixels a second: how far a velocity drifts in one second
        Vector::of(2, 2));            // pixels, by which measurements err
    filter.predict(0.04);             // seconds
    if (filter.mahalanobisDistance(Vector::of(131, 100)) < 3.0)
        filter.correct(Vector::of(131, 100));
    std::cout << filter.state() << " +- " << std::sqrt(filter.covariance()(0, 0)) << std::endl;
    //! [kalman]

    //! [particles]
    ParticleFilter particles(state, 500, Vector::of(5, 5, 100, 100), Vector::of(200, 200));
    particles.predict(0.04);
    const bool isFound = particles.correct([&](const State& particle) {
        const Vector place = particle.getPoseData();
        const cv::Point pixel(cvRound(place[0]), cvRound(place[1]));
        return cv::Rect({}, likely.size()).contains(pixel) ? likely.at<unsigned char>(pixel) : 0.0;
    });
    std::cout << particles.state() << ", " << particles.effectiveParticles() << " effective"
              << std::endl;
    //! [particles]
    return isFound && regions.blobs().dimension() == 1 && densities.at<float>(100, 130) > 0.0F ? 0
                                                                                               : 1;
}
