#pragma once

#include "core/cvdata/pose/Pose.h"

#include <algorithm>
#include <vector>

/// A pose of any dimension and degrees of freedom, whose two forms are independent of each other. It counts the
/// updates of its vectors; an update of the data adds 100 to every element.
class TestPose : public tarvos::core::cvdata::Pose {
public:
    using Vector = tarvos::math::Vector;

    TestPose(int dimension, int dof) : Pose(dimension, dof) {}
    TestPose* clone() const override { return new TestPose(*this); }
    void setData(const Vector& data) override { *mData = data; }
    void setIncData(const Vector& incData) override { *mIncData = incData; }
    void resetData() override { mData->fill(1.0); }
    void resetIncData() override { mIncData->fill(2.0); }
    void updateData() override {
        ++dataUpdates;
        for (unsigned int i = 0; i < mData->dimension(); ++i) (*mData)[i] += 100.0;
        mUpdateFlag = 1;
    }
    void updateIncData() override { ++incUpdates; }
    using Pose::operator=;

    void outdate() { mUpdateFlag = mUpdateIncFlag = 0; }

    int dataUpdates = 0;
    int incUpdates = 0;
};

inline tarvos::math::Vector vectorOf(const std::vector<double>& elements) {
    tarvos::math::Vector vector(static_cast<unsigned int>(elements.size()));
    std::copy(elements.begin(), elements.end(), vector.data());
    return vector;
}

inline std::vector<double> elementsOf(const tarvos::math::Vector& vector) {
    return {vector.data(), vector.data() + vector.dimension()};
}
