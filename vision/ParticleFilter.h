#pragma once

#include <opencv2/core.hpp>
#include <tarvos/core/Export.h>
#include <tarvos/core/trackingdata/State.h>
#include <tarvos/math/Vector.h>

#include <cstddef>
#include <cstdint>
#include <functional>

namespace tarvos::vision {

/// A particle filter over the incremental form of a State: it carries many samples of the state, moves them by the
/// motion model of KalmanFilter with random noise, and weighs them by any likelihood, for instance of the colours in a
/// box.
///
/// The likelihood is evaluated by several threads at once (`cv::parallel_for_`; `cv::setNumThreads(1)`
/// makes it one), each with a State of its own, so that the pose's clone() runs concurrently, too. The same seed gives
/// the same particles whatever the number of threads.
///
/// Aborts for: vectors of the wrong size; deviations that are negative or not finite; no particles; a time before the
/// state's; no likelihood, or one that returns a number that is negative or not finite. More particles than memory can
/// hold throw `std::bad_alloc`. When an operation throws, the filter is unchanged.
///
/// @snippet vision.cpp particles
/// @ingroup vision
class TARVOS_CORE_EXPORT ParticleFilter {
public:
    /// Draws @p particles particles around @p initial, with the standard deviations @p initialDeviation of its
    /// incremental form (stateIncDimension() elements). @p processDeviation, poseDoF() elements, is as in KalmanFilter.
    /// A few hundred particles suffice for a few dimensions; the cost is the likelihood's, times their number.
    ParticleFilter(const core::State& initial, std::size_t particles, const math::Vector& initialDeviation,
                   const math::Vector& processDeviation, std::uint32_t seed = 0);

    /// Moves the particles on to @p time, which is not before the state's.
    void predict(double time);
    /// Multiplies the weight of each particle by its @p likelihood, 0 or more, which need not be normalised; then
    /// resamples when fewer than half of the particles are effective. False, and nothing changed, if no particle is
    /// likely; an exception of the likelihood passes through, and nothing is changed.
    bool correct(const std::function<double(const core::State&)>& likelihood);

    /// The estimate: the weighted mean of the particles; after a correction, of those before they were resampled.
    const core::State& state() const { return mState; }
    /// How many equally weighted particles the estimate is worth: 1 / (sum of the squared weights), before the last
    /// correction resampled.
    double effectiveParticles() const { return mEffective; }
    /// The particles' incremental forms, a row of stateIncDimension() elements each; after the last resampling, if any.
    const math::Matrix& particles() const { return mParticles; }

private:
    core::State mState;
    math::Vector mProcessDeviation;
    math::Matrix mParticles;
    math::Vector mWeights;  ///< which sum to 1
    double mEffective;
    cv::RNG mRandom;
};

}  // namespace tarvos::vision
