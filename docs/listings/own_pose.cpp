#include <tarvos/core/trackingdata/State.h>

#include <cmath>
#include <iostream>

using tarvos::core::State;
using tarvos::core::cvdata::Pose;
using tarvos::math::Vector;

/// A stick in the image. Data: x, y, cosine and sine of its angle. Incremental data: x, y, angle.
class StickPose : public Pose {
public:
    StickPose() : Pose(4, 3) { resetData(); }
    StickPose* clone() const override { return new StickPose(*this); }

    void setData(const Vector& data) override {
        place(data[0], data[1], std::atan2(data[3], data[2]));
    }
    void setIncData(const Vector& incData) override { place(incData[0], incData[1], incData[2]); }
    void resetData() override { place(0.0, 0.0, 0.0); }
    void resetIncData() override { place(0.0, 0.0, 0.0); }

    void updateData() override {
        (*mData)[0] = mX;
        (*mData)[1] = mY;
        (*mData)[2] = std::cos(mAngle);
        (*mData)[3] = std::sin(mAngle);
        mUpdateFlag = 1;
    }
    void updateIncData() override {
        (*mIncData)[0] = mX;
        (*mIncData)[1] = mY;
        (*mIncData)[2] = mAngle;
        mUpdateIncFlag = 1;
    }

    Pose& operator=(const Pose& pose) override {
        const auto& stick = dynamic_cast<const StickPose&>(pose);
        Pose::operator=(pose);
        place(stick.mX, stick.mY, stick.mAngle);
        return *this;
    }

private:
    double mX = 0.0;
    double mY = 0.0;
    double mAngle = 0.0;

    void place(double x, double y, double angle) {
        mX = x;
        mY = y;
        mAngle = angle;
        mUpdateFlag = mUpdateIncFlag = 0;  // both vectors are made when they are next read
    }
};

int main() {
    const StickPose pose;
    State stick(pose, 2);
    Vector whole(6);  // x, y, angle, and their velocities
    whole[2] = 0.5;
    whole[5] = 0.1;
    stick.setIncDataFromVector(whole, -1);

    Vector data(4);
    stick.getPoseData(data);
    std::cout << data << std::endl;
}
