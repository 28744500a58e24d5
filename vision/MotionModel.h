#pragma once

#include <Eigen/Core>
#include <tarvos/core/Contract.h>
#include <tarvos/core/trackingdata/State.h>
#include <tarvos/math/EigenMap.h>

#include <algorithm>
#include <cmath>

/// What the filters share: a target whose derivative above the highest in its state is continuous white noise.
namespace tarvos::vision::motion {

/// The time from @p state to @p time.
inline double timeTo(double time, const core::State& state) {
    const double dt = time - state.getTimeStamp();
    TARVOS_REQUIRE_WITH("(" + std::to_string(time) + " after " + std::to_string(state.getTimeStamp()) + ")",
                        (std::isfinite(dt) && dt >= 0.0) && "Filter: the time is before the state's, or not finite.");
    return dt;
}

/// The incremental form of @p state, which is to have @p dimension elements.
inline math::Vector vectorOf(const core::State& state, unsigned int dimension) {
    TARVOS_REQUIRE((static_cast<unsigned int>(state.stateIncDimension()) == dimension) &&
                   "Filter: the state or the covariance has changed its dimension.");
    math::Vector vector(dimension);
    state.getStateIncData(vector, -1);
    return vector;
}

inline void requireDeviations(const math::Vector& deviations, int dimension) {
    TARVOS_REQUIRE(
        (deviations.dimension() == static_cast<unsigned int>(dimension) &&
         std::all_of(deviations.begin(), deviations.end(), [](double d) { return d >= 0.0 && std::isfinite(d); })) &&
        "Filter: the deviations are not as many as needed, finite and not negative.");
}

/// dt^k / k!: what the derivative k orders higher contributes over the time @p dt.
inline double taylor(double dt, Eigen::Index k) {
    double factor = 1.0;
    for (; k > 0; --k)
        factor *= dt / static_cast<double>(k);
    return factor;
}

/// Moves the blocks over the time @p dt in place: calls `add(to, from, factor)` for each block and each behind it,
/// which is still unchanged then.
template <typename Add>
void advance(double dt, int order, Add add) {
    for (int to = 0; to < order; ++to)
        for (int from = to + 1; from < order; ++from)
            add(to, from, taylor(dt, from - to));
}

/// The covariance that white noise of intensity 1 adds over the time @p dt (Bar-Shalom, Li and Kirubarajan, "Estimation
/// with Applications to Tracking and Navigation", chapter 6).
inline Eigen::MatrixXd unitNoise(double dt, int order) {
    const Eigen::Index last = order - 1;
    return Eigen::MatrixXd::NullaryExpr(order, order, [=](Eigen::Index row, Eigen::Index col) {
        return taylor(dt, last - row) * taylor(dt, last - col) * dt / static_cast<double>(2 * last + 1 - row - col);
    });
}

}  // namespace tarvos::vision::motion
