#include "Colours.h"

#include <opencv2/imgproc.hpp>
#include <tarvos/core/cvdata/features/ColorGMM.h>
#include <tarvos/math/EigenMap.h>

namespace skin_tracker {

namespace {

using tarvos::core::cvdata::ColorGMM;
using tarvos::core::cvdata::GM;

/// Colours count as skin up to this many standard deviations from a component's mean.
constexpr double REACH = 3.0;

constexpr int CHANNELS[] = {0, 1, 2};
constexpr float HUE_RANGE[] = {0, HUES};
constexpr float RANGE[] = {0, LEVELS};
const float* RANGES[] = {HUE_RANGE, RANGE, RANGE};

bool isWithinReach(const GM& component, double hue, double saturation) {
    const Eigen::Vector2d difference = Eigen::Vector2d(hue, saturation) - eigenMap(component.mMean);
    return difference.dot(eigenMap(component.mCovarianceInverse) * difference) <= REACH * REACH;
}

}  // namespace

cv::Mat hueSaturationValue(const cv::Mat& pixels) {
    cv::Mat hsv;
    cv::cvtColor(pixels, hsv, cv::COLOR_RGB2HSV);
    return hsv;
}

cv::Mat skinColours() {
    const ColorGMM skin = ColorGMM::skin();
    cv::Mat colours(HUES, LEVELS, CV_32F, cv::Scalar(0));
    for (int hue = 0; hue < HUES; ++hue)
        for (int saturation = 0; saturation < LEVELS; ++saturation)
            for (const auto& component : skin.mMixtures)
                if (isWithinReach(*component, hue, saturation))
                    colours.at<float>(hue, saturation) = 255.0F;
    return colours;
}

void countColours(const cv::Mat& hsv, const cv::Mat& mask, cv::Mat& histogram) {
    cv::Mat counted;
    cv::calcHist(&hsv, 1, CHANNELS, mask, counted, 3, histogram.size.p, RANGES);
    cv::add(histogram, counted, histogram, cv::noArray(), CV_64F);
}

cv::Mat markColours(const cv::Mat& hsv, const cv::Mat& colours) {
    cv::Mat mask;
    cv::calcBackProject(&hsv, 1, CHANNELS, colours, mask, RANGES);
    return mask;
}

}  // namespace skin_tracker
