#pragma once

#include <tarvos/core/Export.h>
#include <tarvos/core/trackingdata/State.h>
#include <tarvos/math/SquareMatrix.h>
#include <tarvos/math/Vector.h>

namespace tarvos::vision {

/// A Kalman filter over the incremental form of a State, with any pose and any number of derivatives: it predicts the
/// pose and its derivatives to the time of a frame, and corrects them with what was measured at that time.
///
/// With velocity this is the constant-velocity model, with acceleration the constant-acceleration model, and so on,
/// over the time that passes between predictions. The highest derivative in the state drifts: its own derivative is
/// continuous white noise. The process deviation is the standard deviation of that drift in one second (or whatever the
/// unit of the time stamps is), one number for each degree of freedom. So two short predictions equal a long one,
/// whatever the frame rate. Measurement errors are independent and Gaussian.
///
/// The filter keeps no other state than state() and covariance(): what the user changes there is what the next step
/// starts from.
///
/// Aborts for: vectors and matrices of the wrong size; deviations that are negative or not finite; a measurement
/// deviation of 0; a measurement that is not finite; a measurement covariance that is not symmetric and positive
/// definite; a covariance() whose part for the pose, plus the measurement's, is not positive definite; a time before
/// the state's. When an operation throws, for lack of memory or in the pose, the filter is unchanged. The cost of a
/// step grows with the cube of stateIncDimension(); with 4 degrees of freedom and velocities it is one to two
/// microseconds.
///
/// @snippet vision.cpp kalman
/// @ingroup vision
class TARVOS_CORE_EXPORT KalmanFilter {
public:
    /// Starts from @p initial. @p processDeviation (the drift of the highest derivative in one second, in its units)
    /// and @p measurementDeviation (in units of the pose) have poseDoF() elements. The initial covariance is the
    /// measurement's for the pose and the squared process deviation for every derivative; set covariance() where that
    /// does not suit.
    KalmanFilter(const core::State& initial, const math::Vector& processDeviation,
                 const math::Vector& measurementDeviation);

    /// Moves the state on to @p time, which is not before the state's.
    void predict(double time);
    /// Corrects the state with a @p measurement of the pose's incremental data, poseDoF() elements, with the
    /// measurement deviation given at construction.
    void correct(const math::Vector& measurement);
    /// The same with a @p covariance of this measurement, poseDoF() x poseDoF().
    void correct(const math::Vector& measurement, const math::SquareMatrix& covariance);
    /// Corrects the state with a @p measurement of m elements that is @p observation (m x poseDoF()) times the pose's
    /// incremental data, with a @p covariance of m x m.
    void correct(const math::Vector& measurement, const math::Matrix& observation,
                 const math::SquareMatrix& covariance);

    /// How far @p measurement, of poseDoF() elements, lies from the state, in standard deviations of both together,
    /// with the measurement deviation given at construction. For
    /// gating: its square has the chi-squared distribution with poseDoF() degrees of freedom.
    double mahalanobisDistance(const math::Vector& measurement) const;

    /// The estimate.
    core::State& state() { return mState; }
    /// The estimate, read-only.
    const core::State& state() const { return mState; }
    /// The covariance of the estimate's incremental form, stateIncDimension() squared: symmetric and positive
    /// semidefinite.
    math::SquareMatrix& covariance() { return mCovariance; }
    /// The covariance, read-only.
    const math::SquareMatrix& covariance() const { return mCovariance; }

private:
    core::State mState;
    math::Vector mProcessDeviation;
    math::SquareMatrix mMeasurementCovariance;
    math::SquareMatrix mCovariance;

    math::Vector packed() const;
    void update(const math::Vector& measurement, const math::Matrix* observation, const math::SquareMatrix& covariance);
};

}  // namespace tarvos::vision
