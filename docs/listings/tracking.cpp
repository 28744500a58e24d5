/// @file
/// Poses and states; shows pieces of the reference.

#include <tarvos/core/cvdata/pose/VectorPose.h>
#include <tarvos/core/trackingdata/State.h>

#include <iostream>
#include <memory>

using tarvos::core::State;
using tarvos::core::cvdata::VectorPose;
using tarvos::math::Vector;

namespace {

//! [box pose]
/// A box in the image: centre x and y, width, height.
struct BoxPose : VectorPose {
    BoxPose() : VectorPose(4) {}
    BoxPose* clone() const override { return new BoxPose(*this); }
    double area() const { return (*mData)[2] * (*mData)[3]; }
};
//! [box pose]

}  // namespace

int main() {
    //! [state]
    State target(BoxPose(), 2);  // with velocity: D = F = 4
    Vector packed(8);            // box | velocity, target.stateIncDimension() elements
    target.getStateIncData(packed, -1);
    packed[4] = 12.5;  // pixels per second to the right
    target.setIncDataFromVector(packed, -1);
    //! [state]
    target.setPoseData(Vector::of(160, 120, 40, 30));
    const auto* box = dynamic_cast<const BoxPose*>(target.pose());
    std::cout << "a box of " << box->area() << " pixels" << std::endl;
    return box->area() == 1200.0 ? 0 : 1;
}
