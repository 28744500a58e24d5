/// @file
/// The program of the guide "Your first tracker".

#include <opencv2/imgproc.hpp>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/core/cvdata/pose/VectorPose.h>
#include <tarvos/video/FrameSource.h>
#include <tarvos/vision/KalmanFilter.h>
#include <tarvos/vision/Mixture.h>
#include <tarvos/vision/Regions.h>

#include <iostream>
#include <optional>

using namespace tarvos::vision;
using tarvos::core::State;
using tarvos::core::cvdata::Image;
using tarvos::core::cvdata::VectorPose;
using tarvos::math::Vector;
using tarvos::video::FrameSource;

int main(int argc, char** argv) try {
    const auto source = FrameSource::open(argc > 1 ? argv[1] : ".");
    std::optional<KalmanFilter> hand;
    for (Image frame; source->read(frame);) {
        if (hand)
            hand->predict(source->time());

        const Regions regions(skinMask(matView(frame)), 100.0);  // of at least 100 pixels
        if (const Regions::BlobInfo* region = regions.largest()) {
            if (!hand) {
                State state(VectorPose(2), 2);  // x and y in pixels, and their velocities
                state.setPoseData(region->mVector);
                state.setTimeStamp(source->time());
                hand.emplace(state, Vector::of(200, 200), Vector::of(2, 2));
            }
            hand->correct(region->mVector);
            cv::rectangle(matView(frame), boxOf(*region), {0, 255, 0});
        }

        if (hand)
            std::cout << "at " << source->time() << " s: " << hand->state() << std::endl;
        if (!frame.save("tracked.png"))
            return 1;
    }
} catch (const std::exception& error) {
    std::cerr << "first_tracker: " << error.what() << std::endl;
    return 1;
}
