#pragma once

#include "core/cvdata/pose/Pose.h"

namespace skin_tracker {

/// A box in the image: centre x, centre y, width and height in pixels. Data and incremental data are the same.
class BoxPose : public tarvos::core::cvdata::Pose {
public:
    using Vector = tarvos::math::Vector;

    static constexpr int SIZE = 4;

    BoxPose() : Pose(SIZE, SIZE) {}
    BoxPose* clone() const override { return new BoxPose(*this); }
    void setData(const Vector& data) override { *mData = *mIncData = data; }
    void setIncData(const Vector& incData) override { setData(incData); }
    void resetData() override {
        mData->fill(0.0);
        mIncData->fill(0.0);
    }
    void resetIncData() override { resetData(); }
    void updateData() override {}
    void updateIncData() override {}
    using Pose::operator=;
};

}  // namespace skin_tracker
