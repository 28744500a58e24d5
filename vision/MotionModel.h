#pragma once

#include <Eigen/Core>
#include <tarvos/core/Contract.h>
#include <tarvos/core/trackingdata/State.h>
#include <tarvos/math/EigenMap.h>

#include <algorithm>
#include <cmath>

/// The filters' motion model: continuous white noise drives the state's highest derivative.
namespace tarvos::vision::motion {

/// The time from @p state to @p time.
inline double timeTo(double time, const core::State& state) {
    const double dt = time - state.getTimeStamp();
    TARVOS_REQUIRE_WITH("(" + std::to_string(time) + " after " + std::to_string(state.getTimeStamp()) + ")",
                        (std::isfinite(dt) && dt >= 0.0) && "Filter: the time is before the state's, or not finite.");
    return dt;
}

/// The incremental form of @p state. Aborts unless it has @p dimension elements.
inline math::Vector vectorOf(const core::State& state, unsigned int dimension) {
    TARVOS_REQUIRE((static_cast<unsigned int>(state.stateIncDimension()) == dimension) &&
                   "Filter: the state or the covariance has changed its dimension.");
    math::Vector vector(dimension);
    state.getStateIncData(vector, -1);
    return vector;
}

inline void requireDeviations(const char* name, const math::Vector& deviations, int dimension) {
    TARVOS_REQUIRE_WITH(
        "(" + std::string(name) + " deviation: " + std::to_string(deviations.dimension()) + " of " +
            std::to_string(dimension) + " elements)",
        (deviations.dimension() == static_cast<unsigned int>(dimension) &&
         std::all_of(deviations.begin(), deviations.end(), [](double d) { return d >= 0.0 && std::isfinite(d); })) &&
            "Filter: a deviation is missing, negative or not finite.");
}

/// dt^k / k!, the coefficient of the derivative k orders higher in the Taylor series over the time @p dt.
inline double taylorCoefficient(double dt, int k) {
    double coefficient = 1.0;
    for (; k > 0; --k)
        coefficient *= dt / k;
    return coefficient;
}

/// Moves @p order blocks of rows, the pose's first, over the time @p dt.
template <typename Rows>
void advance(double dt, int order, Rows&& rows) {
    const Eigen::Index dof = rows.rows() / order;
    for (int to = 0; to < order; ++to)
        for (int from = to + 1; from < order; ++from)  // which is still unchanged
            rows.middleRows(to * dof, dof) += taylorCoefficient(dt, from - to) * rows.middleRows(from * dof, dof);
}

/// Element (@p row, @p col) of the covariance that white noise of intensity 1 adds to the blocks of one degree of
/// freedom over the time @p dt (Bar-Shalom, Li and Kirubarajan, "Estimation with Applications to Tracking and
/// Navigation", chapter 6).
inline double processNoise(double dt, int order, int row, int col) {
    const int last = order - 1;
    return taylorCoefficient(dt, last - row) * taylorCoefficient(dt, last - col) * dt / (2 * last + 1 - row - col);
}

}  // namespace tarvos::vision::motion
