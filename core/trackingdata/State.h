#pragma once

#include <tarvos/core/cvdata/pose/Pose.h>
#include <tarvos/core/trackingdata/TrackingData.h>
#include <tarvos/math/Vector.h>

#include <iosfwd>
#include <memory>
#include <vector>

namespace tarvos::core {

/// The state of one target at one time: its pose and the pose's derivatives with respect to time. The number of these
/// parts is chosen at construction (1: the pose alone; 2: with velocity; 3: with acceleration).
///
/// Estimators work on flat vectors, so a state is read from and written to them, in two forms. With D =
/// poseDimension(), F = poseDoF() and n = getMaxOrder() - 1 derivative blocks of F elements each:
///
/// - data form, stateDimension() elements: pose data (D) | block 1 (F) | ... | block n (F)
/// - incremental form, stateIncDimension() elements: incremental data (F) | block 1 (F) | ... | block n (F)
///
/// The argument `order` below selects a part: 0 the pose, k from 1 to n block k (1: the velocity), -1 the whole vector.
///
/// Vectors of another size and an invalid order abort before anything is written. Reading may refresh the pose's stored
/// vectors (see cvdata::Pose), so even concurrent readers of one state need a lock.
///
/// Class invariant: there is a pose, and every block has poseDoF() elements. The number of blocks and the pose object
/// never change. States are not movable; std::move copies.
///
/// @snippet tracking.cpp state
/// @ingroup tracking
class TARVOS_CORE_EXPORT State : public TrackingData {
public:
    /// A state on a clone of @p pose, reset to its initial value, with @p maxOrder - 1 zero blocks (none if it is 1 or
    /// less), at time stamp 0. Aborts when the pose's clone() returns null.
    State(const cvdata::Pose& pose, int maxOrder);
    /// A deep copy, time stamp included.
    State(const State& other);

    /// Copies the pose's value, the blocks and the time stamp; through a `TrackingData&` only the time stamp. Aborts
    /// when poseDimension() or stateIncDimension() differ.
    State& operator=(const State& state);
    State* clone() const override { return new State(*this); }

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
    /// The number of parts: 1 for the pose alone, 2 with velocity. The highest valid `order` is one less.
    int getMaxOrder() const { return static_cast<int>(mDerivatives.size()) + 1; }
    /// Elements of the data form: D + n F.
    int stateDimension() const { return poseDimension() + derivativesDimension(); }
    /// Elements of the incremental form: (n + 1) F.
    int stateIncDimension() const { return poseDoF() + derivativesDimension(); }

    /// Sets the pose's data; @p poseData has poseDimension() elements.
    void setPoseData(const math::Vector& poseData);
    /// Reads the pose's data; @p poseData has poseDimension() elements.
    void getPoseData(math::Vector& poseData) const;
    /// The pose's data.
    math::Vector getPoseData() const { return mPose->currentData(); }

    /// Derivative block @p order, from 1 to getMaxOrder() - 1; any other aborts. Valid as long as the state.
    const math::Vector& derivative(int order) const;

    /// Writes @p stateData to the state. Order -1: stateDimension() elements. Other orders: poseDimension() elements,
    /// of which a derivative block takes the first min(D, F).
    void setDataFromVector(const math::Vector& stateData, int order);
    /// Writes @p stateIncData to the state. Order -1: stateIncDimension() elements. Other orders: poseDoF() elements.
    void setIncDataFromVector(const math::Vector& stateIncData, int order);
    /// Reads the state into @p stateIncData. Order -1: stateIncDimension() elements. Other orders: poseDoF() elements.
    void getStateIncData(math::Vector& stateIncData, int order) const;
    /// Reads the whole state into @p stateData of stateDimension() elements.
    void getStateData(math::Vector& stateData) const;

protected:
    using TrackingData::operator=;

private:
    std::unique_ptr<cvdata::Pose> mPose;
    std::vector<math::Vector> mDerivatives;  ///< block 1 first

    int derivativesDimension() const;
    math::Vector& block(int order);
    void pack(const math::Vector& posePart, math::Vector& packed) const;
    void unpackBlocks(const double* values);
};

/// Writes the data form of @p state as a vector.
TARVOS_CORE_EXPORT std::ostream& operator<<(std::ostream& stream, const State& state);

}  // namespace tarvos::core
