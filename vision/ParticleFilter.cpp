#include <Eigen/Cholesky>
#include <tarvos/core/Contract.h>
#include <tarvos/math/EigenMap.h>
#include <tarvos/math/MatView.h>
#include <tarvos/vision/MotionModel.h>
#include <tarvos/vision/ParticleFilter.h>

#include <climits>
#include <new>
#include <utility>

namespace tarvos::vision {

namespace {

using core::State;
using math::eigenMap;
using math::EigenMatrix;
using math::Matrix;
using math::Vector;

/// Chunks of particles for each thread: several, to balance the load.
constexpr double CHUNKS_PER_THREAD = 4;

/// Numbers of the standard normal distribution.
Matrix normalNumbers(unsigned int rows, unsigned int cols, cv::RNG& random) {
    Matrix numbers(rows, cols);
    random.fill(math::matView(numbers), cv::RNG::NORMAL, 0.0, 1.0);
    return numbers;
}

/// The weighted mean of @p particles, a row each.
Vector meanOf(const Matrix& particles, const Vector& weights) {
    Vector mean(particles.cols());
    eigenMap(mean).noalias() = eigenMap(particles).transpose() * eigenMap(weights);
    return mean;
}

/// Fills @p chosen with particles in proportion to their weights: systematic resampling, from one random @p offset
/// below 1 (Kitagawa, "Monte Carlo Filter and Smoother for Non-Gaussian Nonlinear State Space Models", 1996).
void resample(const Matrix& particles, const Vector& weights, double offset, Matrix& chosen) {
    unsigned int source = 0;
    double upTo = weights[0];
    for (unsigned int i = 0; i < chosen.rows(); ++i) {
        while (upTo < (i + offset) / chosen.rows() && source + 1 < chosen.rows())
            upTo += weights[++source];
        eigenMap(chosen).row(i) = eigenMap(particles).row(source);
    }
}

}  // namespace

ParticleFilter::ParticleFilter(const State& initial, std::size_t particles, const Vector& initialDeviation,
                               const Vector& processDeviation, std::uint32_t seed)
    : mState(initial), mProcessDeviation(processDeviation), mEffective(static_cast<double>(particles)), mRandom(seed) {
    TARVOS_REQUIRE((particles > 0) && "ParticleFilter: there are no particles.");
    motion::requireDeviations("initial", initialDeviation, initial.stateIncDimension());
    motion::requireDeviations("process", processDeviation, initial.poseDoF());
    if (particles > INT_MAX)
        throw std::bad_array_new_length();
    const auto count = static_cast<unsigned int>(particles);
    mWeights = Vector(count);
    mWeights.fill(1.0 / mEffective);
    mParticles = normalNumbers(count, initialDeviation.dimension(), mRandom);
    auto rows = eigenMap(mParticles);
    rows = (rows * eigenMap(initialDeviation).col(0).asDiagonal()).rowwise() +
           eigenMap(motion::vectorOf(initial, mParticles.cols())).col(0).transpose();
    mState.setIncDataFromVector(meanOf(mParticles, mWeights), -1);
}

void ParticleFilter::predict(double time) {
    const double dt = motion::timeTo(time, mState);
    const int order = mState.getMaxOrder();
    const Eigen::Index dof = mState.poseDoF();
    cv::RNG random = mRandom;
    Matrix moved = mParticles;
    auto rows = eigenMap(moved);
    motion::advance(dt, order, rows.transpose());
    if (dt > 0.0) {
        const Matrix numbers = normalNumbers(moved.rows(), moved.cols(), random);
        // The noise of a degree of freedom is correlated over the blocks: a factor of its covariance makes it so.
        const EigenMatrix covariance = EigenMatrix::NullaryExpr(order, order, [&](Eigen::Index row, Eigen::Index col) {
            return motion::processNoise(dt, order, static_cast<int>(row), static_cast<int>(col));
        });
        const EigenMatrix factor = covariance.llt().matrixL();
        for (int row = 0; row < order; ++row)
            for (int col = 0; col <= row; ++col)
                rows.middleCols(row * dof, dof) += eigenMap(numbers).middleCols(col * dof, dof) *
                                                   (factor(row, col) * eigenMap(mProcessDeviation).col(0)).asDiagonal();
    }
    mState.setIncDataFromVector(meanOf(moved, mWeights), -1);
    mState.setTimeStamp(time);
    mParticles = std::move(moved);
    mRandom = random;
}

bool ParticleFilter::correct(const std::function<double(const State&)>& likelihood) {
    TARVOS_REQUIRE((likelihood != NULL) && "ParticleFilter: there is no likelihood.");
    Vector weights(mWeights.rows());
    const auto weigh = [&](const cv::Range& range) {
        State particle(mState);
        Vector elements(mParticles.cols());
        for (auto i = static_cast<unsigned int>(range.start); i < static_cast<unsigned int>(range.end); ++i) {
            std::copy_n(mParticles.data() + std::size_t{i} * mParticles.cols(), mParticles.cols(), elements.begin());
            particle.setIncDataFromVector(elements, -1);
            weights[i] = likelihood(particle);
            TARVOS_REQUIRE((std::isfinite(weights[i]) && weights[i] >= 0.0) &&
                           "ParticleFilter: a likelihood is negative or not finite.");
        }
    };
    cv::parallel_for_(cv::Range(0, static_cast<int>(weights.rows())), weigh, CHUNKS_PER_THREAD * cv::getNumThreads());
    auto shares = eigenMap(weights).array();
    const double largest = shares.maxCoeff();
    if (largest == 0.0)
        return false;
    shares = shares / largest * eigenMap(mWeights).array();  // relative to the largest, lest all of them underflow
    const double sum = shares.sum();
    if (sum == 0.0)
        return false;
    shares /= sum;
    const double effective = 1.0 / shares.square().sum();
    const bool isResampling = effective < weights.rows() / 2.0;
    Matrix chosen(isResampling ? mParticles.rows() : 0, mParticles.cols());
    mState.setIncDataFromVector(meanOf(mParticles, weights), -1);
    if (isResampling) {
        resample(mParticles, weights, mRandom.uniform(0.0, 1.0), chosen);
        mParticles = std::move(chosen);
        shares = 1.0 / weights.rows();
    }
    mWeights = std::move(weights);
    mEffective = effective;
    return true;
}

}  // namespace tarvos::vision
