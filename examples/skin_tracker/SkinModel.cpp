#include "SkinModel.h"

#include <tarvos/core/cvdata/features/ColorGMM.h>

#include <cmath>

namespace skin_tracker {

namespace {

using tarvos::core::cvdata::ColorGMM;
using tarvos::core::cvdata::GM;

/// OpenCV's 8-bit hue counts in steps of two degrees.
constexpr int HUES = 180;
constexpr int SATURATIONS = 256;

/// Colours count as skin up to this many standard deviations from a component's mean.
constexpr double REACH = 3.0;

double density(const GM& component, double squaredDistance) {
    return static_cast<double>(component.mWeight) * std::exp(-0.5 * squaredDistance) /
           (2.0 * CV_PI * std::sqrt(static_cast<double>(component.mDeterminant)));
}

double squaredDistance(const GM& component, int hue, int saturation) {
    const double d[] = {hue - component.mMean[0], saturation - component.mMean[1]};
    double sum = 0.0;
    for (unsigned int row = 0; row < 2; ++row)
        for (unsigned int col = 0; col < 2; ++col)
            sum += d[row] * component.mCovarianceInverse.data()[2 * row + col] * d[col];
    return sum;
}

}  // namespace

SkinModel::SkinModel() : mLikely(HUES, SATURATIONS, CV_8UC1) {
    ColorGMM skin(2, 2);
    skin.initSkinDistribution();
    // The density that the weaker component has at the edge of its reach is the least that counts.
    double least = HUGE_VAL;
    for (const auto& component : skin.mMixtures)
        least = std::min(least, density(*component, REACH * REACH));
    for (int hue = 0; hue < HUES; ++hue) {
        for (int saturation = 0; saturation < SATURATIONS; ++saturation) {
            double likelihood = 0.0;
            for (const auto& component : skin.mMixtures)
                likelihood += density(*component, squaredDistance(*component, hue, saturation));
            mLikely.at<unsigned char>(hue, saturation) = likelihood >= least ? 255 : 0;
        }
    }
}

void SkinModel::mark(const cv::Mat& hsv, cv::Mat& mask) const {
    mask.create(hsv.size(), CV_8UC1);
    for (int row = 0; row < hsv.rows; ++row) {
        const auto* colour = hsv.ptr<cv::Vec3b>(row);
        auto* marked = mask.ptr<unsigned char>(row);
        for (int col = 0; col < hsv.cols; ++col)
            marked[col] = mLikely.ptr<unsigned char>(std::min<int>(colour[col][0], HUES - 1))[colour[col][1]];
    }
}

}  // namespace skin_tracker
