#pragma once

#include <tarvos/core/cvdata/pose/Pose.h>

namespace tarvos::core::cvdata {

/// A pose that is a plain vector: a point, a box, joint angles. Data and incremental data are one and the same vector,
/// which is zero initially and after a reset.
///
/// Use it as it is, or derive; override clone():
///
/// @snippet tracking.cpp box pose
/// @ingroup tracking
class TARVOS_CORE_EXPORT VectorPose : public Pose {
public:
    /// A pose of @p size elements, all zero. Aborts when @p size is negative.
    explicit VectorPose(int size) : Pose(size) {}
    using Pose::operator=;

    VectorPose* clone() const override { return new VectorPose(*this); }
    void setData(const math::Vector& data) override { *mData = data; }
    void setIncData(const math::Vector& incData) override { *mData = incData; }
    void resetData() override { mData->fill(0.0); }
    void resetIncData() override { mData->fill(0.0); }
    void updateData() override {}
    void updateIncData() override {}
};

}  // namespace tarvos::core::cvdata
