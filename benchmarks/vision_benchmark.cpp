/// @file
/// What the vision and video libraries take, each operation compared with OpenCV's own or with plain arrays.

#include "Compare.h"

#include <opencv2/core/utility.hpp>
#include <opencv2/imgproc.hpp>
#include <opencv2/video/tracking.hpp>
#include <opencv2/videoio.hpp>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/core/cvdata/pose/VectorPose.h>
#include <tarvos/video/FrameSource.h>
#include <tarvos/vision/Histogram.h>
#include <tarvos/vision/KalmanFilter.h>
#include <tarvos/vision/Mixture.h>
#include <tarvos/vision/ParticleFilter.h>
#include <tarvos/vision/Regions.h>

#include <cmath>
#include <memory>
#include <vector>

namespace {

using namespace tarvos::vision;
using tarvos::core::State;
using tarvos::core::cvdata::ColourHist2d;
using tarvos::core::cvdata::Image;
using tarvos::core::cvdata::VectorPose;
using tarvos::math::Vector;

constexpr int BINS[] = {8, 8, 8};
constexpr int CHANNELS[] = {0, 1, 2};
constexpr float RANGE[] = {0, 256};
const float* const RANGES[] = {RANGE, RANGE, RANGE};

/// A frame of the real video.
cv::Mat picture(const cv::Size& size) {
    cv::Mat frame;
    cv::VideoCapture(HAND_VIDEO).read(frame);
    cv::resize(frame, frame, size, 0, 0, cv::INTER_AREA);
    return frame;
}

void addHistograms(const cv::Size& size) {
    const cv::Mat pixels = picture(size);
    const auto histogram = std::make_shared<ColourHist2d>(BINS[0], BINS[1], BINS[2]);
    const auto counted = std::make_shared<cv::Mat>();
    cv::calcHist(&pixels, 1, CHANNELS, cv::Mat(), *counted, 3, BINS, const_cast<const float**>(RANGES));
    compare(
        cv::format("addPixels %dx%d", size.width, size.height), "cv::calcHist",
        [=] {
            addPixels(*histogram, pixels);
            return histogram->data().data();
        },
        [=] {
            cv::calcHist(&pixels, 1, CHANNELS, cv::Mat(), *counted, 3, BINS, const_cast<const float**>(RANGES));
            return counted->data;
        });
    compare(
        cv::format("backProject %dx%d", size.width, size.height), "cv::calcBackProject",
        [=] { return backProject(*histogram, pixels); },
        [=] {
            cv::Mat projected;
            cv::calcBackProject(&pixels, 1, CHANNELS, *counted, projected, const_cast<const float**>(RANGES));
            return projected;
        });
    if (size.width < 640)
        return;
    compare(
        cv::format("skinMask %dx%d", size.width, size.height), "cvtColor and inRange", [=] { return skinMask(pixels); },
        [=] {
            cv::Mat hsv, mask;
            cv::cvtColor(pixels, hsv, cv::COLOR_BGR2HSV);
            cv::inRange(hsv, cv::Scalar(0, 30, 60), cv::Scalar(20, 150, 255), mask);
            return mask;
        });
}

void addDistance() {
    const auto a = std::make_shared<ColourHist2d>(8, 8, 8), b = std::make_shared<ColourHist2d>(8, 8, 8);
    addPixels(*a, picture({640, 480}));
    addPixels(*b, picture({640, 480})(cv::Rect(300, 100, 200, 200)));
    cv::Mat floats[2];
    cv::Mat(512, 1, CV_64F, a->data().data()).convertTo(floats[0], CV_32F);
    cv::Mat(512, 1, CV_64F, b->data().data()).convertTo(floats[1], CV_32F);
    compare(
        "bhattacharyyaDistance 8x8x8", "cv::compareHist", [=] { return bhattacharyyaDistance(*a, *b); },
        [first = floats[0], second = floats[1]] { return cv::compareHist(first, second, cv::HISTCMP_BHATTACHARYYA); });
}

void addRegions() {
    const cv::Mat mask = skinMask(picture({640, 480}));
    compare(
        "Regions 640x480", "findContours + areas + boxes", [=] { return Regions(mask, 50.0); },
        [=] {
            std::vector<std::vector<cv::Point>> contours;
            cv::findContours(mask, contours, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE);
            std::vector<cv::Rect> boxes;
            for (const auto& contour : contours)
                if (cv::contourArea(contour) >= 50.0)
                    boxes.push_back(cv::boundingRect(contour));
            return boxes;
        });
}

Vector all(int count, double value) {
    Vector vector(static_cast<unsigned int>(count));
    vector.fill(value);
    return vector;
}

void addKalmanFilter(int dof, int order) {
    const auto filter = std::make_shared<KalmanFilter>(State(VectorPose(dof), order), all(dof, 3.0), all(dof, 2.0));
    const auto peer = std::make_shared<cv::KalmanFilter>(dof * order, dof, 0, CV_64F);
    cv::setIdentity(peer->transitionMatrix);
    cv::setIdentity(peer->transitionMatrix.rowRange(0, dof * (order - 1)).colRange(dof, dof * order), 0.04);
    cv::setIdentity(peer->measurementMatrix);
    cv::setIdentity(peer->processNoiseCov, cv::Scalar(0.1));
    cv::setIdentity(peer->measurementNoiseCov, cv::Scalar(4.0));
    cv::setIdentity(peer->errorCovPost, cv::Scalar(4.0));
    compare(
        cv::format("Kalman step of %d dof and order %d", dof, order), "cv::KalmanFilter",
        [=, measurement = all(dof, 1.0)] {
            filter->predict(filter->state().getTimeStamp() + 0.04);
            filter->correct(measurement);
            return &filter->covariance();
        },
        [=, measurement = cv::Mat(cv::Mat::ones(dof, 1, CV_64F))] {
            peer->predict();
            return peer->correct(measurement).data;
        });
}

/// 2,000 particles of 4 degrees of freedom and their velocities, as one would write them with arrays.
class PlainParticles {
public:
    double step() {
        double sum = 0.0;
        for (std::size_t i = 0; i < COUNT; ++i) {
            double* const particle = &mParticles[8 * i];
            for (int k = 0; k < 4; ++k) {
                const double first = mRandom.gaussian(1.0), second = mRandom.gaussian(1.0);
                particle[k] += 0.04 * particle[4 + k] + 0.0046 * first;
                particle[4 + k] += 0.17 * first + 0.1 * second;
            }
            sum += mWeights[i] *= std::exp(-(particle[0] * particle[0] + particle[1] * particle[1]) / 200.0);
        }
        double squares = 0.0;
        for (double& weight : mWeights) {
            weight /= sum;
            squares += weight * weight;
        }
        if (1.0 / squares < COUNT / 2.0)
            resample();
        return mParticles[0];
    }

private:
    static constexpr std::size_t COUNT = 2000;
    cv::RNG mRandom;
    std::vector<double> mParticles = std::vector<double>(8 * COUNT), mWeights = std::vector<double>(COUNT, 1.0 / COUNT);

    void resample() {
        std::vector<double> chosen;
        double upTo = mWeights[0];
        for (std::size_t i = 0, source = 0; i < COUNT; ++i) {
            while (upTo < (static_cast<double>(i) + 0.5) / COUNT && source + 1 < COUNT)
                upTo += mWeights[++source];
            chosen.insert(chosen.end(), &mParticles[8 * source], &mParticles[8 * source] + 8);
        }
        mParticles.swap(chosen);
        std::fill(mWeights.begin(), mWeights.end(), 1.0 / COUNT);
    }
};

std::shared_ptr<ParticleFilter> particles(std::size_t count, double position) {
    State state(VectorPose(4), 2);
    state.setPoseData(Vector::of(position, position, 100.0, 100.0));
    return std::make_shared<ParticleFilter>(state, count, all(8, 2.0), all(4, 1.0));
}

void addParticleFilters() {
    compare(
        "ParticleFilter, 2000 of 8, one thread", "plain arrays",
        [filter = particles(2000, 0.0)] {
            cv::setNumThreads(1);
            filter->predict(filter->state().getTimeStamp() + 0.04);
            filter->correct([](const State& state) {
                const Vector& pose = state.pose()->currentData();
                return std::exp(-(pose[0] * pose[0] + pose[1] * pose[1]) / 200.0);
            });
            cv::setNumThreads(-1);
            return &filter->state();
        },
        [plain = std::make_shared<PlainParticles>()] { return plain->step(); });

    const cv::Mat pixels = picture({640, 480});
    const auto byColour = [=](int threads) {
        const auto wanted = std::make_shared<ColourHist2d>(8, 8, 8);
        addPixels(*wanted, pixels(cv::Rect(150, 150, 100, 100)));
        return [=, filter = particles(500, 200.0)] {
            cv::setNumThreads(threads);
            filter->correct([&](const State& state) {
                const Vector& pose = state.pose()->currentData();
                ColourHist2d colours(8, 8, 8);
                addPixels(colours, pixels(cv::Rect(cvRound(pose[0]) - 50, cvRound(pose[1]) - 50, 100, 100)));
                return std::exp(-20.0 * bhattacharyyaDistance(colours, *wanted));
            });
            cv::setNumThreads(-1);
            return &filter->state();
        };
    };
    compare("ParticleFilter by colour, two threads", "one thread", byColour(2), byColour(1));
}

void addVideo() {
    compare(
        "the video's 217 frames", "cv::VideoCapture",
        [] {
            const auto source = tarvos::video::FrameSource::open(HAND_VIDEO);
            Image frame;
            while (source->read(frame))
                ;
            return source->number();
        },
        [] {
            cv::VideoCapture capture(HAND_VIDEO);
            cv::Mat decoded, frame;
            int frames = 0;
            for (; capture.read(decoded); ++frames)
                decoded.copyTo(frame);
            return frames;
        });
}

}  // namespace

int main(int argc, char** argv) {
    for (const cv::Size& size : {cv::Size(30, 40), cv::Size(640, 480), cv::Size(1920, 1080)})
        addHistograms(size);
    addDistance();
    addRegions();
    for (const int dof : {4, 6})
        for (const int order : {2, 3})
            addKalmanFilter(dof, order);
    addParticleFilters();
    addVideo();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
