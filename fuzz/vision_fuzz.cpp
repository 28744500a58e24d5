/// @file
/// Histograms, regions and Kalman filters of random pixels and numbers, compared with OpenCV's.

#include "Input.h"

#include <opencv2/imgproc.hpp>
#include <opencv2/video/tracking.hpp>
#include <tarvos/core/cvdata/pose/VectorPose.h>
#include <tarvos/math/MatView.h>
#include <tarvos/vision/Histogram.h>
#include <tarvos/vision/KalmanFilter.h>
#include <tarvos/vision/Mixture.h>
#include <tarvos/vision/Regions.h>

#include <cmath>
#include <vector>

namespace {

using namespace tarvos::vision;
using tarvos::core::State;
using tarvos::core::cvdata::ColourHist2d;
using tarvos::core::cvdata::VectorPose;
using tarvos::math::matView;
using tarvos::math::Vector;

/// A part of a larger matrix.
cv::Mat noise(Input& input, int width, int height, int type, int limit) {
    cv::Mat whole(height + 3, width + 5, type);
    cv::theRNG().state = input.byte() + 1U;
    cv::randu(whole, 0, limit);
    return whole(cv::Rect(input.below(5), input.below(3), width, height));
}

void checkHistogram(Input& input) {
    const int width = 1 + input.below(40), height = 1 + input.below(20);
    const cv::Mat pixels = noise(input, width, height, CV_8UC3, 256);
    const cv::Mat mask = input.below(2) == 1 ? noise(input, width, height, CV_8UC1, 2) : cv::Mat();
    const ChannelLimits limits{1 + input.byte(), 1 + input.byte(), 256};
    const int bins[] = {1 + input.below(20), 1 + input.below(20), 1 + input.below(20)};
    Input::note(width, "x", height, ", bins ", bins[0], " ", bins[1], " ", bins[2], ", limits ", limits[0], " ",
                limits[1]);
    ColourHist2d histogram(bins[0], bins[1], bins[2]), expected = histogram;
    const auto entryOf = [&](int y, int x) {
        const auto& pixel = pixels.at<cv::Vec3b>(y, x);
        int entry = 0;
        for (int i = 0; i < 3; ++i) {
            const int limit = limits[static_cast<std::size_t>(i)];
            if (pixel[i] >= limit)
                return -1;
            entry = entry * bins[i] + pixel[i] * bins[i] / limit;
        }
        return entry;
    };
    double largest = 0.0;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            if (entryOf(y, x) >= 0 && (mask.empty() || mask.at<unsigned char>(y, x) != 0))
                largest = std::max(largest, expected.data()[static_cast<unsigned int>(entryOf(y, x))] += 1.0);
    addPixels(histogram, pixels, mask, limits);
    FUZZ_CHECK(cv::norm(matView(histogram.data()), matView(expected.data()), cv::NORM_INF) == 0.0);
    const cv::Mat projected = backProject(histogram, pixels, limits);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const int entry = entryOf(y, x);
            const double share =
                entry >= 0 && largest > 0.0 ? histogram.data()[static_cast<unsigned int>(entry)] / largest : 0.0;
            FUZZ_CHECK(projected.at<unsigned char>(y, x) == cvRound(share * 255.0));
        }
    addPixels(expected, pixels(cv::Rect(0, 0, width, 1)));
    cv::Mat floats[2];
    matView(histogram.data()).convertTo(floats[0], CV_32F);
    matView(expected.data()).convertTo(floats[1], CV_32F);
    const double distance = cv::compareHist(floats[0], floats[1], cv::HISTCMP_BHATTACHARYYA);
    FUZZ_CHECK(std::abs(bhattacharyyaDistance(histogram, expected) - distance) < 1e-3);

    ColourHist2d again = histogram, scaled = histogram;
    addPixels(again, pixels, mask, limits);
    FUZZ_CHECK(cv::norm(matView(again.data()), 2 * matView(histogram.data()), cv::NORM_INF) == 0.0);
    const double scale = std::pow(10.0, input.below(256) - 128);
    for (double& entry : scaled.data())
        entry *= scale;
    const double change = bhattacharyyaDistance(scaled, expected) - bhattacharyyaDistance(histogram, expected);
    FUZZ_CHECK(std::abs(change) < 1e-7);
    normalize(scaled);
    FUZZ_CHECK(std::abs(cv::sum(matView(scaled.data()))[0] - (largest > 0.0 ? 1.0 : 0.0)) < 1e-12);
}

/// An outline has every eighth pixel of the only contour in @p mask, and is closed.
void checkOutline(const Regions& regions, const Regions::BlobInfo& region, const cv::Mat& mask) {
    std::vector<std::vector<cv::Point>> contours;
    cv::findContours(mask, contours, cv::RETR_EXTERNAL, cv::CHAIN_APPROX_NONE);
    tarvos::core::cvdata::VisContourSamplePts outline;
    for (int i = 0; i < 2; ++i)
        regions.traceOutline(region, outline);
    const std::size_t count = outline.mPoints.size();
    FUZZ_CHECK(count == (contours[0].size() + 7) / 8 && count == outline.mEdges.size());
    for (std::size_t i = 0; i < count; ++i) {
        const auto& point = outline.mPoints[i].mVec4;
        FUZZ_CHECK(contours[0][8 * i] == cv::Point(static_cast<int>(point[0]), static_cast<int>(point[1])));
        FUZZ_CHECK(outline.mEdges[i].mPointRefs[0] == &outline.mPoints[i]);
        FUZZ_CHECK(outline.mEdges[i].mPointRefs[1] == &outline.mPoints[(i + 1) % count]);
    }
}

void checkRegions(Input& input) {
    const int width = 3 + input.below(60), height = 3 + input.below(40), minArea = input.below(20);
    cv::Mat mask = cv::Mat::zeros(height, width, CV_8UC1), holes;
    for (int i = input.below(12); i > 0; --i)
        cv::circle(mask, {input.below(width), input.below(height)}, input.below(6), input.below(3), cv::FILLED);
    Input::note("regions in ", width, "x", height, " of at least ", minArea);
    cv::copyMakeBorder(mask == 0, holes, 1, 1, 1, 1, cv::BORDER_CONSTANT, 255);
    cv::floodFill(holes, {0, 0}, 0);  // which leaves the holes
    const cv::Mat filled = (mask != 0) | holes(cv::Rect(1, 1, width, height));
    cv::Mat labels, statistics, centroids;
    const int count = cv::connectedComponentsWithStats(filled, labels, statistics, centroids);
    const cv::Rect place({input.below(9), input.below(9)}, mask.size());  // of the mask in the frame
    const Regions regions(mask, minArea, place.tl());
    std::size_t expected = 0;
    for (int label = 1; label < count; ++label)
        expected += statistics.at<int>(label, cv::CC_STAT_AREA) >= minArea ? 1 : 0;
    FUZZ_CHECK(regions.blobs().dimension() == expected);
    for (const Regions::BlobInfo& region : regions.blobs().mBlobs) {
        const cv::Mat inFrame = regions.maskOf(region, cv::Size(place.br()));
        const cv::Mat own = inFrame(place);
        FUZZ_CHECK(cv::countNonZero(own) == region.mField2 && cv::countNonZero(own & ~filled) == 0);
        std::vector<cv::Point> points;  // of which the box is right; OpenCV 4.6's of a narrow mask is not
        cv::findNonZero(inFrame, points);
        const cv::Rect box = cv::boundingRect(points);
        FUZZ_CHECK(box == boxOf(region));
        FUZZ_CHECK(region.mVector[0] == box.x + box.width / 2.0 && region.mVector[1] == box.y + box.height / 2.0);
        FUZZ_CHECK(regions.largest()->mField2 >= region.mField2);
        checkOutline(regions, region, inFrame);
    }
}

/// Densities of random mixtures, by the formula of the normal distribution.
void checkMixture(Input& input) {
    const int dim = 1 + input.below(4), count = 1 + input.below(3);
    tarvos::core::cvdata::ColorGMM mixture(static_cast<std::size_t>(count), static_cast<std::size_t>(dim));
    for (const auto& component : mixture.mMixtures) {
        const cv::Mat root = noise(input, dim, dim, CV_64F, 20);
        const cv::Mat covariance = root * root.t() + cv::Mat::eye(dim, dim, CV_64F);
        covariance.copyTo(matView(component->mCovariance));
        component->mCovarianceInverse = component->mCovariance.invert(tarvos::math::Matrix::INVERSION_LU);
        component->mDeterminant = static_cast<float>(cv::determinant(covariance));
        component->mWeight = 0.01F * input.byte();
        for (double& element : component->mMean)
            element = input.byte();
    }
    const cv::Mat pixels = noise(input, 5, 4, CV_8UC4, 256), densities = density(mixture, pixels);
    Input::note("a mixture of ", count, " in ", dim, " dimensions");
    for (int i = 0; i < 20; ++i) {
        cv::Mat colour;
        cv::Mat(pixels.at<cv::Vec4b>(i / 5, i % 5)).rowRange(0, dim).convertTo(colour, CV_64F);
        double expected = 0.0;
        for (const auto& component : mixture.mMixtures) {
            const double distance =
                cv::Mahalanobis(colour, matView(component->mMean), matView(component->mCovarianceInverse));
            expected += component->mWeight * std::exp(-distance * distance / 2) /
                        std::sqrt(std::pow(2 * CV_PI, dim) * component->mDeterminant);
        }
        FUZZ_CHECK(std::abs(densities.at<float>(i / 5, i % 5) - expected) < 1e-6 + 1e-4 * expected);
    }
}

void checkFilter(Input& input) {
    const int dof = 1 + input.below(4), order = 1 + input.below(4), size = dof * order;
    const auto numbers = [&](int count) {
        Vector vector(static_cast<unsigned int>(count));
        for (double& element : vector)
            element = 0.1 * (1 + input.byte());
        return vector;
    };
    const Vector drift = numbers(dof), error = numbers(dof);
    KalmanFilter filter(State(VectorPose(dof), order), drift, error), twice = filter;
    const double time = 0.01 * (1 + input.byte());
    Input::note("filter of ", dof, " degrees of freedom, order ", order, ", over ", time, " s");
    filter.predict(time);
    const double scale = cv::norm(matView(filter.covariance()), cv::NORM_INF);
    const auto taylor = [&](int k) { return k < 0 ? 0.0 : std::pow(time, k) / std::tgamma(k + 1); };
    for (int i = 0; i < order * order * dof; ++i) {
        const int row = i / dof / order, col = i / dof % order, element = i % dof;
        double expected = std::pow(drift[static_cast<unsigned int>(element)], 2) * time * taylor(order - 1 - row) *
                          taylor(order - 1 - col) / (2 * order - 1 - row - col);
        for (int k = 0; k < order; ++k)  // from the initial variances
            expected += taylor(k - row) * taylor(k - col) *
                        std::pow((k == 0 ? error : drift)[static_cast<unsigned int>(element)], 2);
        const double covariance = matView(filter.covariance()).at<double>(row * dof + element, col * dof + element);
        FUZZ_CHECK(std::abs(covariance - expected) < 1e-12 * scale);
    }
    twice.predict(time * input.below(256) / 256);
    twice.predict(time);
    FUZZ_CHECK(cv::norm(matView(filter.covariance()), matView(twice.covariance()), cv::NORM_INF) < 1e-12 * scale);

    const int measured = input.below(dof + 1);  // combinations of the pose's elements; 0 stands for the pose itself
    const int count = measured > 0 ? measured : dof;
    cv::KalmanFilter peer(size, count, 0, CV_64F);
    Vector state(static_cast<unsigned int>(size)), measurement = numbers(count), deviations = numbers(count);
    tarvos::math::SquareMatrix noise(deviations.dimension());
    for (unsigned int i = 0; i < deviations.dimension(); ++i)
        noise(i, i) = deviations[i];
    tarvos::math::Matrix observation(deviations.dimension(), static_cast<unsigned int>(dof));
    for (double& element : observation)
        element = 0.1 * (1 + input.byte());
    filter.state().getStateIncData(state, -1);
    matView(state).copyTo(peer.statePre);
    matView(filter.covariance()).copyTo(peer.errorCovPre);
    matView(noise).copyTo(peer.measurementNoiseCov);
    cv::setIdentity(peer.measurementMatrix);
    if (measured > 0)
        matView(observation).copyTo(peer.measurementMatrix.colRange(0, dof));
    peer.correct(matView(measurement));
    if (measured > 0)
        filter.correct(measurement, observation, noise);
    else
        filter.correct(measurement, noise);
    filter.state().getStateIncData(state, -1);
    FUZZ_CHECK(cv::norm(matView(state), peer.statePost, cv::NORM_INF) < 1e-8 * (1.0 + cv::norm(peer.statePost)));
    FUZZ_CHECK(cv::norm(matView(filter.covariance()), peer.errorCovPost, cv::NORM_INF) < 1e-9 * scale);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    Input input(bytes, size);
    checkHistogram(input);
    checkRegions(input);
    checkMixture(input);
    checkFilter(input);
    return 0;
}
