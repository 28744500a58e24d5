#include "core/trackingdata/State.h"

#include "core/Contract.h"

#include <algorithm>

namespace tarvos::core {

namespace {

math::Vector zeros(int count) {
    return math::Vector(static_cast<unsigned int>(count));
}

/// The first @p count elements of @p values, of which there are at least so many.
math::Vector headOf(const math::Vector& values, int count) {
    math::Vector head = zeros(count);
    std::copy_n(values.data(), count, head.data());
    return head;
}

}  // namespace

State::State(cvdata::Pose& pose, int maxOrder) : TrackingData(0.0), mPose(pose.clone()) {
    for (int order = 1; order < maxOrder; ++order)
        mDerivatives.push_back(std::make_unique<math::Vector>(zeros(poseDoF())));
    resetAll();
}

State::State(const State& other) : TrackingData(other), mPose(other.mPose->clone()) {
    mDerivatives.reserve(other.mDerivatives.size());
    for (const auto& block : other.mDerivatives)
        mDerivatives.push_back(std::make_unique<math::Vector>(*block));
}

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
    for (std::size_t i = 0; i < mDerivatives.size(); ++i)
        *mDerivatives[i] = *state.mDerivatives[i];
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
    for (const auto& block : mDerivatives)
        block->fill(0.0);
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
    math::Vector poseData = zeros(poseDimension());
    mPose->getData(poseData);
    getBlocksInto(std::copy_n(poseData.data(), poseDimension(), stateData.data()));
}

void State::getStateIncData(math::Vector& stateIncData, int order) const {
    if (order == -1) {
        const auto sdim = static_cast<unsigned int>(stateIncDimension());
        TARVOS_REQUIRE((sdim == stateIncData.dimension()) &&
                       "ERROR: incremental state dimension does not match the input vector!");
        math::Vector incData = zeros(poseDoF());
        mPose->getIncData(incData);
        getBlocksInto(std::copy_n(incData.data(), poseDoF(), stateIncData.data()));
        return;
    }
    const auto pdim = static_cast<unsigned int>(poseDoF());
    TARVOS_REQUIRE((pdim == stateIncData.dimension()) &&
                   "ERROR: incremental state dimension does not match the input vector!");
    TARVOS_REQUIRE((order <= getMaxOrder()) && "ERROR: too high AR order for this state!");
    if (order == 0) {
        mPose->getIncData(stateIncData);
        return;
    }
    TARVOS_REQUIRE_UNSIGNED(mDerivatives.size() >= order);
    std::copy_n(mDerivatives[static_cast<std::size_t>(order) - 1]->data(), poseDoF(), stateIncData.data());
}

void State::setIncDataFromVector(const math::Vector& stateIncData, int order) {
    if (order == -1) {
        const auto sdim = static_cast<unsigned int>(stateIncDimension());
        TARVOS_REQUIRE((sdim == stateIncData.dimension()) &&
                       "ERROR: incremental state dimension does not match the input vector!");
        mPose->setIncData(headOf(stateIncData, poseDoF()));
        setBlocksFrom(stateIncData.data() + poseDoF());
        return;
    }
    const auto pdim = static_cast<unsigned int>(poseDoF());
    TARVOS_REQUIRE((pdim == stateIncData.dimension()) &&
                   "ERROR: incremental state dimension does not match the input vector!");
    TARVOS_REQUIRE((order <= getMaxOrder()) && "ERROR: too high AR order for this state!");
    if (order == 0) {
        mPose->setIncData(stateIncData);
        return;
    }
    TARVOS_REQUIRE_UNSIGNED(mDerivatives.size() >= order);
    std::copy_n(stateIncData.data(), poseDoF(), mDerivatives[static_cast<std::size_t>(order) - 1]->data());
}

void State::setDataFromVector(const math::Vector& stateData, int order) {
    if (order == -1) {
        const auto sdim = static_cast<unsigned int>(stateDimension());
        TARVOS_REQUIRE((sdim == stateData.dimension()) && "ERROR: state dimension does not match the input vector!");
        mPose->setData(headOf(stateData, poseDimension()));
        setBlocksFrom(stateData.data() + poseDimension());
        return;
    }
    const auto pdim = static_cast<unsigned int>(poseDimension());
    TARVOS_REQUIRE((pdim == stateData.dimension()) && "ERROR: state dimension does not match the input vector!");
    TARVOS_REQUIRE((order <= getMaxOrder()) && "ERROR: too high AR order for this state!");
    if (order == 0) {
        mPose->setData(stateData);
        return;
    }
    TARVOS_REQUIRE_UNSIGNED(mDerivatives.size() >= order);
    std::copy_n(stateData.data(), std::min(poseDimension(), poseDoF()),
                mDerivatives[static_cast<std::size_t>(order) - 1]->data());
}

/// Fills all blocks from @p values, block after block.
void State::setBlocksFrom(const double* values) {
    for (const auto& block : mDerivatives) {
        std::copy_n(values, poseDoF(), block->data());
        values += poseDoF();
    }
}

/// Writes all blocks to @p values, block after block.
void State::getBlocksInto(double* values) const {
    for (const auto& block : mDerivatives)
        values = std::copy_n(block->data(), poseDoF(), values);
}

}  // namespace tarvos::core
