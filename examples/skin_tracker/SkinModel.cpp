#include "SkinModel.h"

#include <tarvos/core/cvdata/features/ColorGMM.h>
#include <tarvos/math/EigenMap.h>

#include <algorithm>

namespace skin_tracker {

namespace {

using tarvos::core::cvdata::ColorGMM;
using tarvos::core::cvdata::GM;

/// OpenCV's 8-bit hue counts in steps of two degrees.
constexpr int HUES = 180;
constexpr int SATURATIONS = 256;

/// Colours count as skin up to this many standard deviations from a component's mean.
constexpr double REACH = 3.0;

bool isWithinReach(const GM& component, double hue, double saturation) {
    const Eigen::Vector2d difference = Eigen::Vector2d(hue, saturation) - eigenMap(component.mMean);
    return difference.dot(eigenMap(component.mCovarianceInverse) * difference) <= REACH * REACH;
}

}  // namespace

SkinModel::SkinModel() : mLikely(HUES, SATURATIONS, CV_8UC1, cv::Scalar(0)) {
    ColorGMM skin(2, 2);
    skin.initSkinDistribution();
    for (int hue = 0; hue < HUES; ++hue)
        for (int saturation = 0; saturation < SATURATIONS; ++saturation)
            for (const auto& component : skin.mMixtures)
                if (isWithinReach(*component, hue, saturation))
                    mLikely.at<unsigned char>(hue, saturation) = 255;
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
