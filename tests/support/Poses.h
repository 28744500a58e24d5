#pragma once

#include <tarvos/core/cvdata/pose/Pose.h>

#include <vector>

/// A pose of any dimension and degrees of freedom, whose two forms are independent of each other. It has vectors of its
/// own and counts their updates; an update of the data adds 100 to every element,
/// one of the incremental data leaves its flag at 0.
class TestPose : public tarvos::core::cvdata::Pose {
public:
    using Vector = tarvos::math::Vector;

    TestPose(int dimension, int dof)
        : mOwnData(static_cast<unsigned int>(dimension)), mOwnIncData(static_cast<unsigned int>(dof)) {
        mDimension = dimension;
        mDof = dof;
        mData = &mOwnData;
        mIncData = &mOwnIncData;
    }
    TestPose* clone() const override { return new TestPose(*this); }
    void setData(const Vector& data) override { *mData = data; }
    void setIncData(const Vector& incData) override { *mIncData = incData; }
    void resetData() override { mData->fill(1.0); }
    void resetIncData() override { mIncData->fill(2.0); }
    void updateData() override {
        ++dataUpdates;
        for (double& element : *mData)
            element += 100.0;
        mUpdateFlag = 1;
    }
    void updateIncData() override { ++incUpdates; }

    void setCurrent() { mUpdateFlag = mUpdateIncFlag = 1; }
    void outdate() { mUpdateFlag = mUpdateIncFlag = 0; }

    int dataUpdates = 0;
    int incUpdates = 0;

private:
    Vector mOwnData;
    Vector mOwnIncData;
};

/// A vector of @p count elements @p value.
inline tarvos::math::Vector all(int count, double value) {
    tarvos::math::Vector vector(static_cast<unsigned int>(count));
    vector.fill(value);
    return vector;
}

inline std::vector<double> elementsOf(const tarvos::math::Matrix& matrix) {
    return {matrix.begin(), matrix.end()};
}
