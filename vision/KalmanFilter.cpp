#include <Eigen/Cholesky>
#include <tarvos/core/Contract.h>
#include <tarvos/math/EigenMap.h>
#include <tarvos/vision/KalmanFilter.h>
#include <tarvos/vision/MotionModel.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarvos::vision {

namespace {

using math::eigenMap;
using math::EigenMatrix;
using math::SquareMatrix;
using math::Vector;

bool isFinite(const math::Matrix& matrix) {
    return std::all_of(matrix.begin(), matrix.end(), [](double element) { return std::isfinite(element); });
}

void requirePositiveDefinite(const SquareMatrix& covariance) {
    TARVOS_REQUIRE((covariance.rows() == covariance.cols() &&
                    eigenMap(covariance).isApprox(eigenMap(covariance).transpose()) &&
                    eigenMap(covariance).llt().info() == Eigen::Success) &&
                   "KalmanFilter: the measurement's covariance is not symmetric and positive definite.");
}

Eigen::LLT<EigenMatrix> factorsOf(const EigenMatrix& covariance) {
    Eigen::LLT<EigenMatrix> factors(covariance);
    TARVOS_REQUIRE((factors.info() == Eigen::Success && factors.matrixLLT().diagonal().allFinite()) &&
                   "KalmanFilter: the state's covariance is not positive semidefinite.");
    return factors;
}

}  // namespace

KalmanFilter::KalmanFilter(const core::State& initial, const Vector& processDeviation,
                           const Vector& measurementDeviation)
    : mState(initial), mProcessDeviation(processDeviation) {
    const int dof = initial.poseDoF();
    motion::requireDeviations("process", processDeviation, dof);
    motion::requireDeviations("measurement", measurementDeviation, dof);
    TARVOS_REQUIRE((eigenMap(measurementDeviation).cwiseAbs2().array() > 0.0).all() &&
                   "KalmanFilter: a measurement deviation is 0.");
    mCovariance = SquareMatrix(static_cast<unsigned int>(initial.stateIncDimension()));
    mMeasurementCovariance = SquareMatrix(measurementDeviation.dimension());
    auto covariance = eigenMap(mCovariance);
    covariance.diagonal() = eigenMap(processDeviation).array().square().matrix().replicate(initial.getMaxOrder(), 1);
    eigenMap(mMeasurementCovariance).diagonal() = eigenMap(measurementDeviation).array().square();
    covariance.topLeftCorner(dof, dof) = eigenMap(mMeasurementCovariance);
}

void KalmanFilter::predict(double time) {
    const double dt = motion::timeTo(time, mState);
    const int order = mState.getMaxOrder();
    const Eigen::Index dof = mState.poseDoF();
    Vector vector = packed();
    EigenMatrix covariance = eigenMap(mCovariance);
    motion::advance(dt, order, eigenMap(vector));
    motion::advance(dt, order, covariance);
    covariance.transposeInPlace();
    motion::advance(dt, order, covariance);
    for (int row = 0; row < order; ++row)
        for (int col = 0; col < order; ++col)
            covariance.block(row * dof, col * dof, dof, dof).diagonal() +=
                motion::processNoise(dt, order, row, col) * eigenMap(mProcessDeviation).cwiseAbs2();
    mState.setIncDataFromVector(vector, -1);
    mState.setTimeStamp(time);
    eigenMap(mCovariance) = (covariance + covariance.transpose()) / 2.0;
}

void KalmanFilter::correct(const Vector& measurement) {
    update(measurement, nullptr, mMeasurementCovariance);
}

void KalmanFilter::correct(const Vector& measurement, const SquareMatrix& covariance) {
    requirePositiveDefinite(covariance);
    update(measurement, nullptr, covariance);
}

void KalmanFilter::correct(const Vector& measurement, const math::Matrix& observation, const SquareMatrix& covariance) {
    requirePositiveDefinite(covariance);
    update(measurement, &observation, covariance);
}

/// Corrects by a measurement of the whole pose, where @p observation is null, or of what it says.
void KalmanFilter::update(const Vector& measurement, const math::Matrix* observation, const SquareMatrix& covariance) {
    const auto dof = static_cast<unsigned int>(mState.poseDoF());
    const unsigned int size = observation != nullptr ? observation->rows() : dof;
    TARVOS_REQUIRE((measurement.dimension() == size && covariance.rows() == size && covariance.cols() == size &&
                    (observation == nullptr || observation->cols() == dof)) &&
                   "KalmanFilter: measurement, observation and covariance do not fit each other.");
    TARVOS_REQUIRE((isFinite(measurement) && (observation == nullptr || isFinite(*observation))) &&
                   "KalmanFilter: the measurement is not finite.");
    Vector vector = packed();
    auto x = eigenMap(vector);
    const auto measurementNoise = eigenMap(covariance);
    EigenMatrix posterior = eigenMap(mCovariance);
    EigenMatrix cross = posterior.topRows(dof);  // the covariance of what is measured and the state
    EigenMatrix innovation = cross.leftCols(dof);
    EigenMatrix predicted = x.topRows(dof);
    if (observation != nullptr) {
        const auto h = eigenMap(*observation);
        cross = h * cross;
        innovation = cross.leftCols(dof) * h.transpose();
        predicted = h * predicted;
    }
    innovation += measurementNoise;
    const EigenMatrix gain = factorsOf(innovation).solve(cross);  // transposed
    x.noalias() += gain.transpose() * (eigenMap(measurement) - predicted);
    posterior.noalias() -= cross.transpose() * gain;
    // The rounding of this difference is relative to the prior: after a diffuse one it could exceed what is left. The
    // margin keeps the posterior positive semidefinite, and what was measured is computed without a difference.
    const double margin = 4.0 * static_cast<double>(posterior.rows()) * std::numeric_limits<double>::epsilon();
    posterior.diagonal() += margin * eigenMap(mCovariance).diagonal();
    if (observation == nullptr) {
        posterior.topRows(dof).noalias() = measurementNoise * gain;
        const Eigen::Index rest = posterior.rows() - dof;
        posterior.bottomLeftCorner(rest, dof) = posterior.topRightCorner(dof, rest).transpose();
    }
    mState.setIncDataFromVector(vector, -1);
    eigenMap(mCovariance) = (posterior + posterior.transpose()) / 2.0;
}

double KalmanFilter::mahalanobisDistance(const Vector& measurement) const {
    TARVOS_REQUIRE((measurement.dimension() == mMeasurementCovariance.rows() && isFinite(measurement)) &&
                   "KalmanFilter: the measurement is not finite, with poseDoF() elements.");
    const Vector vector = packed();
    const Eigen::Index dof = mState.poseDoF();
    const Eigen::LLT<EigenMatrix> innovation =
        factorsOf(eigenMap(mCovariance).topLeftCorner(dof, dof) + eigenMap(mMeasurementCovariance));
    return innovation.matrixL().solve(eigenMap(measurement) - eigenMap(vector).topRows(dof)).norm();
}

/// The state as a vector, which the covariance still fits.
Vector KalmanFilter::packed() const {
    return motion::vectorOf(mState, mCovariance.rows() == mCovariance.cols() ? mCovariance.rows() : 0);
}

}  // namespace tarvos::vision
