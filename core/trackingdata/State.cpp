#include "core/trackingdata/State.h"

#include "core/Contract.h"

#include <algorithm>

namespace tarvos::core {

namespace {

/// The order that stands for the whole state.
constexpr int WHOLE = -1;

}  // namespace

State::State(const cvdata::Pose& pose, int maxOrder) : TrackingData(0.0), mPose(pose.clone()) {
    if (maxOrder > 1)
        mDerivatives.assign(static_cast<std::size_t>(maxOrder) - 1, math::Vector(static_cast<unsigned int>(poseDoF())));
    resetAll();
}

State::State(const State& other) : TrackingData(other), mPose(other.mPose->clone()), mDerivatives(other.mDerivatives) {}

State::~State() = default;

State& State::operator=(const State& state) {
    if (this == &state)
        return *this;
    TARVOS_REQUIRE(((this->poseDimension() == state.poseDimension()) &&
                    (this->stateIncDimension() == state.stateIncDimension())) &&
                   "ERROR: cannot assign states of different types!");
    TARVOS_REQUIRE((mDerivatives.size() == state.mDerivatives.size()) &&
                   "ERROR: cannot assign states of different types!");
    *mPose = *state.pose();
    std::copy(state.mDerivatives.begin(), state.mDerivatives.end(), mDerivatives.begin());
    setTimeStamp(state.getTimeStamp());
    return *this;
}

State* State::clone() const {
    return new State(*this);
}

void State::resetAll() {
    mPose->resetData();
    resetIncData();
}

void State::resetIncData() {
    mPose->resetIncData();
    for (math::Vector& block : mDerivatives)
        block.fill(0.0);
}

void State::setPoseData(const math::Vector& poseData) {
    const auto pdim = static_cast<unsigned int>(poseDimension());
    TARVOS_REQUIRE((pdim == poseData.dimension()) && "ERROR: finite state dimension does not match the input vector!");
    mPose->setData(poseData);
}

void State::getPoseData(math::Vector& poseData) const {
    const auto pdim = static_cast<unsigned int>(poseDimension());
    TARVOS_REQUIRE((pdim == poseData.dimension()) && "ERROR: finite state dimension does not match the input vector!");
    mPose->getData(poseData);
}

void State::getStateData(math::Vector& stateData) const {
    TARVOS_REQUIRE_UNSIGNED((stateDimension() == stateData.dimension()) &&
                            "ERROR: finite state dimension does not match the input vector!");
    pack(mPose->currentData(), stateData);
}

void State::setDataFromVector(const math::Vector& stateData, int order) {
    const auto pdim = static_cast<unsigned int>(poseDimension());
    if (order == WHOLE) {
        const auto sdim = static_cast<unsigned int>(stateDimension());
        TARVOS_REQUIRE((sdim == stateData.dimension()) && "ERROR: state dimension does not match the input vector!");
        mPose->setData(math::Vector::of(stateData.data(), pdim));
        unpackBlocks(stateData.data() + poseDimension());
        return;
    }
    TARVOS_REQUIRE((pdim == stateData.dimension()) && "ERROR: state dimension does not match the input vector!");
    if (order == 0) {
        mPose->setData(stateData);
        return;
    }
    math::Vector& block = blockOf(order, __extension__ __PRETTY_FUNCTION__);
    std::copy_n(stateData.data(), std::min(poseDimension(), poseDoF()), block.data());
}

}  // namespace tarvos::core
