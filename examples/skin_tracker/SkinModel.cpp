#include "SkinModel.h"

#include <tarvos/core/cvdata/features/ColorGMM.h>
#include <tarvos/math/EigenMap.h>

#include <algorithm>

namespace skin_tracker {

namespace {

using tarvos::core::cvdata::ColorGMM;
using tarvos::core::cvdata::GM;

/// Of 8-bit hue and saturation.
constexpr int LEVELS = 256;

/// Colours count as skin up to this many standard deviations from a component's mean.
constexpr double REACH = 3.0;

bool isWithinReach(const GM& component, double hue, double saturation) {
    const Eigen::Vector2d difference = Eigen::Vector2d(hue, saturation) - eigenMap(component.mMean);
    return difference.dot(eigenMap(component.mCovarianceInverse) * difference) <= REACH * REACH;
}

}  // namespace

SkinModel::SkinModel() : mLikely(LEVELS, LEVELS, CV_8UC1, cv::Scalar(0)) {
    ColorGMM skin(2, 2);
    skin.initSkinDistribution();
    for (int hue = 0; hue < LEVELS; ++hue)
        for (int saturation = 0; saturation < LEVELS; ++saturation)
            for (const auto& component : skin.mMixtures)
                if (isWithinReach(*component, hue, saturation))
                    mLikely.at<unsigned char>(hue, saturation) = 255;
}

void SkinModel::mark(const cv::Mat& hsv, cv::Mat& mask) const {
    mask.create(hsv.size(), CV_8UC1);
    std::transform(hsv.begin<cv::Vec3b>(), hsv.end<cv::Vec3b>(), mask.begin<unsigned char>(),
                   [&](const cv::Vec3b& colour) { return mLikely.at<unsigned char>(colour[0], colour[1]); });
}

}  // namespace skin_tracker
