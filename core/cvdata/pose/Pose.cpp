#include "core/cvdata/pose/Pose.h"

namespace tarvos::core::cvdata {

namespace {

math::Vector zeros(int count) {
    TARVOS_REQUIRE((count >= 0) && "Pose: a count of elements is negative.");
    return math::Vector(static_cast<unsigned int>(count));
}

}  // namespace

Pose::Pose(int dimension, int dof)
    : mDimension(dimension), mDof(dof), mDataVector(zeros(dimension)), mIncDataVector(zeros(dof)) {}

Pose::Pose(int size) : mDimension(size), mDof(size), mDataVector(zeros(size)), mIncData(mData) {}

Pose::Pose(const Pose& pose)
    : mDimension(pose.mDimension),
      mDof(pose.mDof),
      mUpdateFlag(pose.mUpdateFlag),
      mDataVector(pose.mDataVector),
      mIncDataVector(pose.mIncDataVector),
      mIncData(pose.mIncData == pose.mData ? mData : &mIncDataVector),
      mUpdateIncFlag(pose.mUpdateIncFlag) {}

Pose::~Pose() = default;

// The vectors' own assignments look whether it is this pose.
Pose& Pose::operator=(const Pose& pose) {  // NOLINT(bugprone-unhandled-self-assignment)
    TARVOS_REQUIRE((mDimension == pose.mDimension && mDof == pose.mDof) && "Pose: the poses differ in kind.");
    *mData = *pose.mData;
    if (mIncData != mData)
        *mIncData = *pose.mIncData;
    mUpdateFlag = pose.mUpdateFlag;
    mUpdateIncFlag = pose.mUpdateIncFlag;
    return *this;
}

}  // namespace tarvos::core::cvdata
