#include <Eigen/Cholesky>
#include <tarvos/core/Contract.h>
#include <tarvos/math/EigenMap.h>
#include <tarvos/vision/MotionModel.h>
#include <tarvos/vision/ParticleFilter.h>

#include <algorithm>
#include <climits>
#include <new>
#include <numeric>
#include <utility>

namespace tarvos::vision {

namespace {

using core::State;
using math::eigenMap;
using math::EigenMatrix;
using math::Vector;

/// How many parts of the particles each thread gets, so that one with a slow likelihood delays the others little.
constexpr double PARTS_PER_THREAD = 4;

/// Particles, a row each.
auto rowsOf(std::vector<double>& particles, std::size_t count) {
    return Eigen::Map<EigenMatrix>(particles.data(), static_cast<Eigen::Index>(count),
                                   static_cast<Eigen::Index>(particles.size() / count));
}

/// Numbers of the standard normal distribution, a row for each particle.
std::vector<double> normalNumbers(std::size_t particles, std::size_t dimension, cv::RNG& random) {
    std::vector<double> numbers(particles * dimension);
    random.fill(cv::Mat(static_cast<int>(particles), static_cast<int>(dimension), CV_64F, numbers.data()),
                cv::RNG::NORMAL, 0.0, 1.0);
    return numbers;
}

/// The weighted mean.
Vector meanOf(std::vector<double>& particles, std::vector<double>& weights) {
    const auto rows = rowsOf(particles, weights.size());
    Vector mean(static_cast<unsigned int>(rows.cols()));
    eigenMap(mean) = rows.transpose() * rowsOf(weights, weights.size());
    return mean;
}

/// As many particles, each drawn about as often as its weight says: systematic resampling, from one random @p offset
/// below 1 (Kitagawa, "Monte Carlo Filter and Smoother for Non-Gaussian Nonlinear State Space Models", 1996).
std::vector<double> resampled(const std::vector<double>& particles, const std::vector<double>& weights, double offset) {
    const auto dimension = static_cast<std::ptrdiff_t>(particles.size() / weights.size());
    std::vector<double> chosen;
    chosen.reserve(particles.size());
    std::size_t source = 0;
    double upTo = weights[0];
    for (std::size_t i = 0; i < weights.size(); ++i) {
        const double place = (static_cast<double>(i) + offset) / static_cast<double>(weights.size());
        while (upTo < place && source + 1 < weights.size())
            upTo += weights[++source];
        const auto first = particles.begin() + static_cast<std::ptrdiff_t>(source) * dimension;
        chosen.insert(chosen.end(), first, first + dimension);
    }
    return chosen;
}

}  // namespace

ParticleFilter::ParticleFilter(const State& initial, std::size_t particles, const Vector& initialDeviation,
                               const Vector& processDeviation, std::uint32_t seed)
    : mState(initial), mProcessDeviation(processDeviation), mEffective(static_cast<double>(particles)), mRandom(seed) {
    const auto dimension = static_cast<unsigned int>(initial.stateIncDimension());
    TARVOS_REQUIRE((particles > 0) && "ParticleFilter: there are no particles.");
    motion::requireDeviations(initialDeviation, initial.stateIncDimension());
    motion::requireDeviations(processDeviation, initial.poseDoF());
    if (particles > std::min<std::size_t>(mWeights.max_size() / std::max(dimension, 1U), INT_MAX))
        throw std::bad_array_new_length();
    mWeights.assign(particles, 1.0 / mEffective);
    mParticles = normalNumbers(particles, dimension, mRandom);
    auto rows = rowsOf(mParticles, particles);
    rows = (rows * eigenMap(initialDeviation).col(0).asDiagonal()).rowwise() +
           eigenMap(motion::vectorOf(initial, dimension)).col(0).transpose();
    mState.setIncDataFromVector(meanOf(mParticles, mWeights), -1);
}

void ParticleFilter::predict(double time) {
    const double dt = motion::timeTo(time, mState);
    const int order = mState.getMaxOrder();
    const Eigen::Index dof = mState.poseDoF();
    cv::RNG random = mRandom;
    std::vector<double> moved = mParticles;
    auto rows = rowsOf(moved, mWeights.size());
    motion::advance(dt, order, [&](int to, int from, double factor) {
        rows.middleCols(to * dof, dof) += factor * rows.middleCols(from * dof, dof);
    });
    if (dt > 0.0) {
        std::vector<double> numbers = normalNumbers(mWeights.size(), static_cast<std::size_t>(rows.cols()), random);
        const auto white = rowsOf(numbers, mWeights.size());
        // The noise of a degree of freedom is correlated over the blocks: a factor of its covariance makes it so.
        const Eigen::MatrixXd factor = motion::unitNoise(dt, order).llt().matrixL();
        for (int row = 0; row < order; ++row)
            for (int col = 0; col <= row; ++col)
                rows.middleCols(row * dof, dof) += white.middleCols(col * dof, dof) *
                                                   (factor(row, col) * eigenMap(mProcessDeviation).col(0)).asDiagonal();
    }
    mState.setIncDataFromVector(meanOf(moved, mWeights), -1);
    mState.setTimeStamp(time);
    mParticles = std::move(moved);
    mRandom = random;
}

bool ParticleFilter::correct(const std::function<double(const State&)>& likelihood) {
    TARVOS_REQUIRE((likelihood != NULL) && "ParticleFilter: there is no likelihood.");
    std::vector<double> weights(mWeights.size());
    const auto dimension = static_cast<unsigned int>(mState.stateIncDimension());
    const auto weigh = [&](const cv::Range& range) {
        State particle(mState);
        Vector vector(dimension);
        for (auto i = static_cast<std::size_t>(range.start); i < static_cast<std::size_t>(range.end); ++i) {
            std::copy_n(&mParticles[i * dimension], dimension, vector.begin());
            particle.setIncDataFromVector(vector, -1);
            weights[i] = likelihood(particle);
            TARVOS_REQUIRE((std::isfinite(weights[i]) && weights[i] >= 0.0) &&
                           "ParticleFilter: a likelihood is negative or not finite.");
        }
    };
    cv::parallel_for_(cv::Range(0, static_cast<int>(weights.size())), weigh, PARTS_PER_THREAD * cv::getNumThreads());
    const double largest = *std::max_element(weights.begin(), weights.end());
    for (std::size_t i = 0; i < weights.size(); ++i)
        weights[i] = largest > 0.0 ? mWeights[i] * (weights[i] / largest) : 0.0;
    const double sum = std::accumulate(weights.begin(), weights.end(), 0.0);
    if (sum == 0.0)
        return false;
    for (double& weight : weights)
        weight /= sum;
    const double effective = 1.0 / std::inner_product(weights.begin(), weights.end(), weights.begin(), 0.0);
    const bool isResampling = effective < static_cast<double>(weights.size()) / 2.0;
    cv::RNG random = mRandom;
    std::vector<double> chosen;
    if (isResampling)
        chosen = resampled(mParticles, weights, random.uniform(0.0, 1.0));
    mState.setIncDataFromVector(meanOf(mParticles, weights), -1);
    if (isResampling) {
        mParticles = std::move(chosen);
        std::fill(weights.begin(), weights.end(), 1.0 / static_cast<double>(weights.size()));
    }
    mWeights = std::move(weights);
    mEffective = effective;
    mRandom = random;
    return true;
}

}  // namespace tarvos::vision
