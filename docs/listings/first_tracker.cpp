/// @file
/// The program of the guide "Your first tracker".

#include <opencv2/imgproc.hpp>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/core/cvdata/features/ColorGMM.h>
#include <tarvos/core/cvdata/pose/VectorPose.h>
#include <tarvos/core/trackingdata/State.h>

#include <cmath>
#include <iostream>

using tarvos::core::State;
using tarvos::core::cvdata::ColorGMM;
using tarvos::core::cvdata::GM;
using tarvos::core::cvdata::Image;
using tarvos::core::cvdata::VectorPose;
using tarvos::math::Vector;

/// The density of the skin model at a colour.
double likelihood(const ColorGMM& skin, double hue, double saturation) {
    double sum = 0.0;
    for (const auto& component : skin.mMixtures) {
        const double h = hue - component->mMean[0];
        const double s = saturation - component->mMean[1];
        GM& gm = *component;
        const double distance = gm.mCovarianceInverse(0, 0) * h * h +
                                2.0 * gm.mCovarianceInverse(0, 1) * h * s +
                                gm.mCovarianceInverse(1, 1) * s * s;
        sum += gm.mWeight * std::exp(-0.5 * distance) / (2.0 * CV_PI * std::sqrt(gm.mDeterminant));
    }
    return sum;
}

/// Paints the skin in the image green. Returns the number of its pixels and, in centre, their mean.
int markSkin(Image& image, const ColorGMM& skin, Vector& centre) {
    cv::Mat pixels = matView(image);  // a view: nothing is copied
    cv::Mat hsv;
    cv::cvtColor(pixels, hsv, cv::COLOR_RGB2HSV);  // red and blue exchanged, as the model wants it
    int count = 0;
    centre.fill(0.0);
    for (int y = 0; y < pixels.rows; ++y) {
        for (int x = 0; x < pixels.cols; ++x) {
            const cv::Vec3b colour = hsv.at<cv::Vec3b>(y, x);
            if (likelihood(skin, colour[0], colour[1]) < 5e-5)
                continue;
            pixels.at<cv::Vec3b>(y, x) = {0, 255, 0};
            centre[0] += x;
            centre[1] += y;
            ++count;
        }
    }
    for (unsigned int i = 0; i < 2 && count > 0; ++i)
        centre[i] /= count;
    return count;
}

int main(int argc, char** argv) {
    const ColorGMM skin = ColorGMM::skin();
    State hand(VectorPose(2), 2);  // position (x and y in pixels) and velocity
    const double dt = 1.0 / 25.0;
    for (int frame = 1; frame < argc; ++frame) {
        Image image = std::string(argv[frame]);
        if (image.empty())
            return 1;  // Image has reported it

        // Predict: the position changes by the velocity.
        Vector position(2);
        hand.getPoseData(position);
        Vector velocity = hand.derivative(1);
        for (unsigned int i = 0; i < 2; ++i)
            position[i] += velocity[i] * dt;

        // Correct: half of the difference between measurement and prediction goes into the
        // position, a part of it into the velocity.
        Vector measured(2);
        if (markSkin(image, skin, measured) > 0) {
            for (unsigned int i = 0; i < 2; ++i) {
                const double error = measured[i] - position[i];
                position[i] += (frame == 1 ? 1.0 : 0.5) * error;
                velocity[i] += frame == 1 ? 0.0 : 0.2 * error / dt;
            }
        }
        hand.setIncDataFromVector(position, 0);
        hand.setIncDataFromVector(velocity, 1);
        hand.setTimeStamp(frame * dt);
        std::cout << "at " << hand.getTimeStamp() << " s: position " << position << " px, velocity "
                  << velocity << " px/s\n";
        if (frame == argc - 1 && !image.save("skin.png"))
            return 1;
    }
}
