#include <tarvos/core/Contract.h>
#include <tarvos/core/cvdata/pose/Pose.h>

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
      mDataVector(*pose.mData),
      mIncDataVector(*pose.mIncData),
      mIncData(pose.mIncData == pose.mData ? mData : &mIncDataVector),
      mUpdateIncFlag(pose.mUpdateIncFlag) {}

// The vectors' own assignments check for self-assignment.
Pose& Pose::operator=(const Pose& pose) {  // NOLINT(bugprone-unhandled-self-assignment)
    TARVOS_REQUIRE((mDimension == pose.mDimension && mDof == pose.mDof) && "Pose: the poses differ in kind.");
    *mData = *pose.mData;
    if (mIncData != mData)
        *mIncData = *pose.mIncData;
    mUpdateFlag = pose.mUpdateFlag;
    mUpdateIncFlag = pose.mUpdateIncFlag;
    return *this;
}

void Pose::getData(math::Vector& vec) {
    TARVOS_REQUIRE((int)vec.dimension() == dimension() && "ERROR: getData - vector sizes does not match!");
    vec = currentData();
}

void Pose::getIncData(math::Vector& vec) {
    TARVOS_REQUIRE(((int)vec.dimension() == dof()) && "ERROR: getIncData - vector sizes does not match!");
    vec = currentIncData();
}

const math::Vector& Pose::currentData() {
    if (getUpdateFlag() == 0)
        updateData();
    TARVOS_REQUIRE((mData != NULL && (int)(mData->rows() * mData->cols()) == dimension()) &&
                   "Pose: the data has lost its size.");
    return *mData;
}

const math::Vector& Pose::currentIncData() {
    if (getUpdateIncFlag() == 0)
        updateIncData();
    TARVOS_REQUIRE((mIncData != NULL && (int)(mIncData->rows() * mIncData->cols()) == dof()) &&
                   "Pose: the data has lost its size.");
    return *mIncData;
}

}  // namespace tarvos::core::cvdata
