#include "core/cvdata/pose/Pose.h"

namespace tarvos::core::cvdata {

namespace {

std::unique_ptr<math::Vector> vectorOf(int count) {
    TARVOS_REQUIRE((count >= 0) && "Pose: a count of elements is negative.");
    return std::make_unique<math::Vector>(static_cast<unsigned int>(count));
}

}  // namespace

Pose::Pose(int dimension, int dof)
    : mDimension(dimension), mDof(dof), mData(vectorOf(dimension)), mIncData(vectorOf(dof)) {}

Pose::Pose(const Pose& pose)
    : mDimension(pose.mDimension),
      mDof(pose.mDof),
      mUpdateFlag(pose.mUpdateFlag),
      mData(std::make_unique<math::Vector>(*pose.mData)),
      mIncData(std::make_unique<math::Vector>(*pose.mIncData)),
      mUpdateIncFlag(pose.mUpdateIncFlag) {}

Pose::~Pose() = default;

Pose& Pose::operator=(const Pose& pose) {
    TARVOS_REQUIRE((mDimension == pose.mDimension && mDof == pose.mDof) && "Pose: the poses differ in kind.");
    *mData = *pose.mData;
    *mIncData = *pose.mIncData;
    mUpdateFlag = pose.mUpdateFlag;
    mUpdateIncFlag = pose.mUpdateIncFlag;
    return *this;
}

}  // namespace tarvos::core::cvdata
