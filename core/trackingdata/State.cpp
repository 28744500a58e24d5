#include <tarvos/core/Contract.h>
#include <tarvos/core/trackingdata/State.h>

#include <algorithm>
#include <ostream>

namespace tarvos::core {

namespace {

/// @p part, which a pose has brought up to date, if it still has the size that was checked before.
const math::Vector& sized(const math::Vector& part, unsigned int size) {
    TARVOS_REQUIRE((part.rows() * part.cols() == size) && "State: the pose has changed its size while it was read.");
    return part;
}

}  // namespace

State::State(const cvdata::Pose& pose, int maxOrder) : TrackingData(0.0), mPose(pose.clone()) {
    TARVOS_REQUIRE((mPose != NULL) && "State: the pose's clone() returned null.");
    if (maxOrder > 1)
        mDerivatives.assign(static_cast<std::size_t>(maxOrder) - 1, math::Vector(static_cast<unsigned int>(poseDoF())));
    resetAll();
}

State::State(const State& other) : TrackingData(other), mPose(other.mPose->clone()), mDerivatives(other.mDerivatives) {
    TARVOS_REQUIRE((mPose != NULL) && "State: the pose's clone() returned null.");
}

State& State::operator=(const State& state) {
    if (this == &state)
        return *this;
    TARVOS_REQUIRE(((this->poseDimension() == state.poseDimension()) &&
                    (this->stateIncDimension() == state.stateIncDimension())) &&
                   "ERROR: cannot assign states of different types!");
    *mPose = *state.pose();
    std::copy_n(state.mDerivatives.begin(), std::min(mDerivatives.size(), state.mDerivatives.size()),
                mDerivatives.begin());
    setTimeStamp(state.getTimeStamp());
    return *this;
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
    poseData = sized(mPose->currentData(), pdim);
}

const math::Vector& State::derivative(int order) const {
    TARVOS_REQUIRE_WITH("(derivative " + std::to_string(order) + " of " + std::to_string(getMaxOrder() - 1) + ")",
                        (order >= 1 && order < getMaxOrder()) && "State: there is no such derivative.");
    return mDerivatives[static_cast<std::size_t>(order) - 1];
}

void State::setDataFromVector(const math::Vector& stateData, int order) {
    const auto pdim = static_cast<unsigned int>(poseDimension());
    if (order == -1) {
        const auto sdim = static_cast<unsigned int>(stateDimension());
        TARVOS_REQUIRE((sdim == stateData.dimension()) && "ERROR: state dimension does not match the input vector!");
        mPose->setData(math::Vector::of(stateData.data(), pdim));
        unpackBlocks(stateData.data() + pdim);
        return;
    }
    TARVOS_REQUIRE((pdim == stateData.dimension()) && "ERROR: state dimension does not match the input vector!");
    TARVOS_REQUIRE((order <= getMaxOrder()) && "ERROR: too high AR order for this state!");
    TARVOS_REQUIRE(mDerivatives.size() >= order);
    if (order == 0)
        mPose->setData(stateData);
    else
        std::copy_n(stateData.begin(), std::min(pdim, block(order).dimension()), block(order).begin());
}

void State::setIncDataFromVector(const math::Vector& stateIncData, int order) {
    const auto pdim = static_cast<unsigned int>(poseDoF());
    if (order == -1) {
        const auto sdim = static_cast<unsigned int>(stateIncDimension());
        TARVOS_REQUIRE((sdim == stateIncData.dimension()) &&
                       "ERROR: incremental state dimension does not match the input vector!");
        mPose->setIncData(math::Vector::of(stateIncData.data(), pdim));
        unpackBlocks(stateIncData.data() + pdim);
        return;
    }
    TARVOS_REQUIRE((pdim == stateIncData.dimension()) &&
                   "ERROR: incremental state dimension does not match the input vector!");
    TARVOS_REQUIRE((order <= getMaxOrder()) && "ERROR: too high AR order for this state!");
    TARVOS_REQUIRE(mDerivatives.size() >= order);
    if (order == 0)
        mPose->setIncData(stateIncData);
    else
        std::copy_n(stateIncData.begin(), std::min(pdim, block(order).dimension()), block(order).begin());
}

void State::getStateIncData(math::Vector& stateIncData, int order) const {
    const auto pdim = static_cast<unsigned int>(poseDoF());
    if (order == -1) {
        const auto sdim = static_cast<unsigned int>(stateIncDimension());
        TARVOS_REQUIRE((sdim == stateIncData.dimension()) &&
                       "ERROR: incremental state dimension does not match the input vector!");
        pack(sized(mPose->currentIncData(), pdim), stateIncData);
        return;
    }
    TARVOS_REQUIRE((pdim == stateIncData.dimension()) &&
                   "ERROR: incremental state dimension does not match the input vector!");
    TARVOS_REQUIRE((order <= getMaxOrder()) && "ERROR: too high AR order for this state!");
    TARVOS_REQUIRE(mDerivatives.size() >= order);
    const math::Vector& part = order == 0 ? sized(mPose->currentIncData(), pdim) : derivative(order);
    std::copy_n(part.begin(), std::min(pdim, part.dimension()), stateIncData.begin());
}

void State::getStateData(math::Vector& stateData) const {
    TARVOS_REQUIRE((stateDimension() == stateData.dimension()) &&
                   "ERROR: finite state dimension does not match the input vector!");
    const auto dimension = static_cast<unsigned int>(poseDimension());
    pack(sized(mPose->currentData(), dimension), stateData);
}

int State::derivativesDimension() const {
    unsigned int sum = 0;
    for (const math::Vector& block : mDerivatives)
        sum += block.rows();
    return static_cast<int>(sum);
}

/// Derivative block @p order, which the caller has checked.
math::Vector& State::block(int order) {
    return mDerivatives[static_cast<std::size_t>(order) - 1];
}

/// Writes the pose's part and all blocks one after the other.
void State::pack(const math::Vector& posePart, math::Vector& packed) const {
    double* next = packed.begin();
    for (const double element : posePart)
        *next++ = element;
    for (const math::Vector& block : mDerivatives)
        for (const double element : block)
            *next++ = element;
}

/// Fills all blocks from @p values, block after block.
void State::unpackBlocks(const double* values) {
    for (math::Vector& block : mDerivatives)
        for (double& element : block)
            element = *values++;
}

std::ostream& operator<<(std::ostream& stream, const State& state) {
    math::Vector data(static_cast<unsigned int>(state.stateDimension()));
    state.getStateData(data);
    return stream << data;
}

}  // namespace tarvos::core
