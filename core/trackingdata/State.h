#pragma once

#include "../../math/Vector.h"
#include "../cvdata/pose/Pose.h"
#include "TrackingData.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace tarvos::core {

/// The state of one target at one time: its pose and the pose's derivatives by time, up to an order chosen when the
/// state is made (1: the pose alone; 2: with velocity; 3: with acceleration).
///
/// Estimators want flat vectors, so a state is read from and written into them, in two forms. With D =
/// poseDimension(), F = poseDoF() and n = getMaxOrder() - 1 derivative blocks of F elements each:
///
/// - data form, stateDimension() elements: pose data (D) | block 1 (F) | ... | block n (F)
/// - incremental form, stateIncDimension() elements: incremental data (F) | block 1 (F) | ... | block n (F)
///
/// An `order` of -1 stands for such a whole vector, 0 for the pose part alone, k from 1 to n for block k alone.
///
/// Vectors are given in the size they must have; any other size, and an order that names nothing, stops the process
/// before anything is written. Reading may refresh the pose's stored vectors (see cvdata::Pose), so that even readers
/// of one state must not run at the same time.
///
/// Class invariant: there is a pose, and every block has poseDoF() elements. The number of blocks and the pose object
/// stay the same for life. Moving copies, since a state always has a pose.
///
/// @snippet tracking.cpp state
/// @ingroup tracking
class TARVOS_CORE_EXPORT State : public TrackingData {
public:
    /// A state on a clone of @p pose with @p maxOrder - 1 blocks (none when it is 1 or less), reset to initial
    /// values, at time stamp 0.
    State(const cvdata::Pose& pose, int maxOrder);
    /// A deep copy, time stamp included.
    State(const State& other);
    ~State() override;

    /// Copies the pose's value, the blocks and the time stamp. Stops the process when the dimensions or the numbers
    /// of blocks differ. (Through a `TrackingData&` only the time stamp is copied.)
    State& operator=(const State& state);
    State* clone() const override;

    /// Resets the pose, data and incremental data, and sets all blocks to zero.
    void resetAll();
    /// Resets the pose's incremental data and sets all blocks to zero.
    void resetIncData();

    /// The state's own pose.
    cvdata::Pose* pose() const { return mPose.get(); }
    /// D: elements of the pose's data.
    int poseDimension() const { return mPose->dimension(); }
    /// F: elements of the pose's incremental data and of each block.
    int poseDoF() const { return mPose->dof(); }
    /// The number of blocks plus one.
    int getMaxOrder() const { return static_cast<int>(mDerivatives.size()) + 1; }
    /// Elements of the data form: D + n F.
    int stateDimension() const { return poseDimension() + derivativesDimension(); }
    /// Elements of the incremental form: (n + 1) F.
    int stateIncDimension() const { return poseDoF() + derivativesDimension(); }

    /// Sets the pose's data; @p poseData has poseDimension() elements.
    void setPoseData(const math::Vector& poseData);
    /// Reads the pose's data; @p poseData has poseDimension() elements.
    void getPoseData(math::Vector& poseData) const;

    /// Writes @p stateData into the state. Order -1: stateDimension() elements. Other orders: poseDimension()
    /// elements, of which a block takes the first min(D, F).
    void setDataFromVector(const math::Vector& stateData, int order);
    /// Writes @p stateIncData into the state. Order -1: stateIncDimension() elements. Other orders: poseDoF()
    /// elements.
    void setIncDataFromVector(const math::Vector& stateIncData, int order);
    /// Reads the state into @p stateIncData. Order -1: stateIncDimension() elements. Other orders: poseDoF()
    /// elements.
    void getStateIncData(math::Vector& stateIncData, int order) const;
    /// Reads the whole state into @p stateData of stateDimension() elements.
    void getStateData(math::Vector& stateData) const;

protected:
    using TrackingData::operator=;

private:
    std::unique_ptr<cvdata::Pose> mPose;
    std::vector<math::Vector> mDerivatives;  ///< block 1 first

    int derivativesDimension() const { return static_cast<int>(mDerivatives.size()) * poseDoF(); }
    const math::Vector& blockOf(int order, const char* function) const;
    math::Vector& blockOf(int order, const char* function);
    void requireIncSize(const math::Vector& stateIncData, int order, const char* function) const;
    void pack(const math::Vector& posePart, math::Vector& packed) const;
    void unpackBlocks(const double* values);
};

// In line, since trackers read and write states more often than anything else.

inline void State::getStateIncData(math::Vector& stateIncData, int order) const {
    requireIncSize(stateIncData, order, __extension__ __PRETTY_FUNCTION__);
    if (order == -1)
        pack(mPose->currentIncData(), stateIncData);
    else
        stateIncData = order == 0 ? mPose->currentIncData() : blockOf(order, __extension__ __PRETTY_FUNCTION__);
}

inline void State::setIncDataFromVector(const math::Vector& stateIncData, int order) {
    requireIncSize(stateIncData, order, __extension__ __PRETTY_FUNCTION__);
    if (order == 0 || (order == -1 && mDerivatives.empty())) {
        mPose->setIncData(stateIncData);
    } else if (order == -1) {
        mPose->setIncData(math::Vector::of(stateIncData.data(), static_cast<unsigned int>(poseDoF())));
        unpackBlocks(stateIncData.data() + poseDoF());
    } else {
        blockOf(order, __extension__ __PRETTY_FUNCTION__) = stateIncData;
    }
}

/// Derivative block @p order, of which @p function needs to be sure.
inline const math::Vector& State::blockOf(int order, const char* function) const {
    TARVOS_REQUIRE_AT("core/trackingdata/State.h", function,
                      (order <= getMaxOrder()) && "ERROR: too high AR order for this state!");
    TARVOS_REQUIRE_UNSIGNED_AT("core/trackingdata/State.h", function, mDerivatives.size() >= order);
    return mDerivatives[static_cast<std::size_t>(order) - 1];
}

inline math::Vector& State::blockOf(int order, const char* function) {
    return const_cast<math::Vector&>(static_cast<const State&>(*this).blockOf(order, function));
}

/// Requires the size that the incremental form has at @p order, for @p function.
inline void State::requireIncSize(const math::Vector& stateIncData, int order, const char* function) const {
    if (order == -1) {
        const auto sdim = static_cast<unsigned int>(stateIncDimension());
        TARVOS_REQUIRE_AT("core/trackingdata/State.h", function,
                          (sdim == stateIncData.dimension()) &&
                              "ERROR: incremental state dimension does not match the input vector!");
    } else {
        const auto pdim = static_cast<unsigned int>(poseDoF());
        TARVOS_REQUIRE_AT("core/trackingdata/State.h", function,
                          (pdim == stateIncData.dimension()) &&
                              "ERROR: incremental state dimension does not match the input vector!");
    }
}

/// Writes the pose's part and all blocks one after the other.
inline void State::pack(const math::Vector& posePart, math::Vector& packed) const {
    double* next = std::copy(posePart.begin(), posePart.end(), packed.data());
    for (const math::Vector& block : mDerivatives)
        next = std::copy(block.begin(), block.end(), next);
}

/// Fills all blocks from @p values, block after block.
inline void State::unpackBlocks(const double* values) {
    for (math::Vector& block : mDerivatives)
        for (double& element : block)
            element = *values++;
}

}  // namespace tarvos::core
