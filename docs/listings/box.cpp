#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/core/cvdata/pose/VectorPose.h>
#include <tarvos/video/FrameSource.h>
#include <tarvos/vision/KalmanFilter.h>
#include <tarvos/vision/Mixture.h>
#include <tarvos/vision/Regions.h>

#include <iostream>

using namespace tarvos::vision;
using tarvos::math::Vector;

int main(int argc, char** argv) {
    const auto source = tarvos::video::FrameSource::open(argc > 1 ? argv[1] : ".");
    // In 1 s the velocities drift by so many pixels a second; a measurement is 5 pixels off.
    KalmanFilter filter(tarvos::core::State(tarvos::core::cvdata::VectorPose(4), 2),
                        Vector::of(500, 500, 100, 100), Vector::of(5, 5, 5, 5));
    bool isFound = false;
    for (tarvos::core::cvdata::Image frame; source->read(frame);) {
        filter.predict(source->time());
        const Regions regions(skinMask(matView(frame)), 100.0);
        if (const Regions::BlobInfo* region = regions.largest()) {
            const cv::Rect box = boxOf(*region);
            const Vector measured = Vector::of(box.x, box.y, box.width, box.height);
            if (!isFound)
                filter.state().setPoseData(measured);
            filter.correct(measured);
            isFound = true;
        }
        if (isFound)
            std::cout << source->time() << " s: " << filter.state() << std::endl;
    }
}
