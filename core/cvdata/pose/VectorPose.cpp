#include <tarvos/core/cvdata/pose/VectorPose.h>

namespace tarvos::core::cvdata {

VectorPose::~VectorPose() = default;

VectorPose* VectorPose::clone() const {
    return new VectorPose(*this);
}

}  // namespace tarvos::core::cvdata
