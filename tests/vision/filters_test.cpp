#include "support/Poses.h"

#include <Eigen/Eigenvalues>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tarvos/core/cvdata/pose/VectorPose.h>
#include <tarvos/math/EigenMap.h>
#include <tarvos/vision/KalmanFilter.h>
#include <tarvos/vision/ParticleFilter.h>

#include <cmath>
#include <limits>
#include <stdexcept>

using namespace tarvos::vision;
using tarvos::core::State;
using tarvos::core::cvdata::VectorPose;
using tarvos::math::eigenMap;
using tarvos::math::Matrix;
using tarvos::math::SquareMatrix;
using tarvos::math::Vector;

namespace {

const double NOT_A_NUMBER = std::nan("");

/// A state of @p dof degrees of freedom with the values 1, 2, 3, ...
State counting(int dof, int order) {
    State state(VectorPose(dof), order);
    Vector values(static_cast<unsigned int>(state.stateIncDimension()));
    for (unsigned int i = 0; i < values.dimension(); ++i)
        values[i] = i + 1;
    state.setIncDataFromVector(values, -1);
    return state;
}

Vector vectorOf(const State& state) {
    Vector values(static_cast<unsigned int>(state.stateIncDimension()));
    state.getStateIncData(values, -1);
    return values;
}

struct KalmanFilterTest : testing::Test {
    KalmanFilter filter{counting(2, 2), Vector::of(0.5, 0.7), Vector::of(2, 3)};
};

TEST_F(KalmanFilterTest, GatesByTheDeviationsOfStateAndMeasurement) {
    EXPECT_DOUBLE_EQ(filter.mahalanobisDistance(Vector::of(1, 2 + 2 * std::sqrt(18.0))), 2.0);
}

TEST_F(KalmanFilterTest, StartsFromWhatTheUserChanges) {
    filter.state().setTimeStamp(10.0);
    filter.state().setPoseData(Vector::of(100, 200));
    filter.covariance()(0, 0) = 1e6;
    filter.predict(11.0);
    EXPECT_THAT(elementsOf(filter.state().getPoseData()), testing::ElementsAre(103, 204));
    filter.correct(Vector::of(0, 0));
    EXPECT_LT(filter.state().getPoseData()[0], 1.0) << "an uncertain state believes the measurement";
}

TEST_F(KalmanFilterTest, TheCovarianceStaysSymmetricAndPositiveSemidefinite) {
    for (const int order : {2, 4}) {
        KalmanFilter moving(counting(2, order), all(2, 1e7), all(2, 1.0));
        for (int i = 1; i <= 30000; ++i) {
            moving.predict(0.01 * i);
            if (i % 3 != 0)
                moving.correct(Vector::of(std::sin(0.01 * i), std::cos(0.01 * i)));
            if (i % 1000 != 0)
                continue;
            const auto covariance = eigenMap(moving.covariance());
            ASSERT_EQ(covariance, covariance.transpose()) << "step " << i;
            const Eigen::VectorXd scale = covariance.diagonal().cwiseSqrt().cwiseInverse();
            const Eigen::MatrixXd correlation = scale.asDiagonal() * covariance * scale.asDiagonal();
            ASSERT_GT(Eigen::SelfAdjointEigenSolver<Eigen::MatrixXd>(correlation).eigenvalues().minCoeff(), -1e-12)
                << "order " << order << ", step " << i;
        }
    }
}

TEST_F(KalmanFilterTest, ADiffusePriorGivesWayToTheMeasurements) {
    for (const double variance : {1e12, 1e20}) {
        KalmanFilter diffuse(State(VectorPose(1), 2), all(1, 0.01), all(1, 0.5));
        diffuse.covariance()(1, 1) = variance;
        for (int i = 1; i < 20; ++i) {
            diffuse.predict(i);
            diffuse.correct(all(1, 3.0 * i));
            ASSERT_GT(diffuse.covariance()(1, 1), 0.0) << "after " << i << " measurements";
        }
        EXPECT_LT(diffuse.covariance()(0, 0), 0.25);
        EXPECT_LT(diffuse.covariance()(1, 1), 0.01);
        EXPECT_NEAR(diffuse.state().derivative(1)[0], 3.0, 0.1);
    }
}

TEST_F(KalmanFilterTest, AbortsOnBrokenContracts) {
    const State state = counting(2, 2);
    const Vector fine = Vector::of(1, 1);
    const char* const deviations = "a deviation is missing, negative or not finite";
    for (const Vector& wrong : {Vector::of(1), Vector::of(1, -1), Vector::of(1, NOT_A_NUMBER),
                                Vector::of(1, std::numeric_limits<double>::infinity())}) {
        ASSERT_DEATH(KalmanFilter(state, wrong, fine), deviations) << wrong;
        ASSERT_DEATH(KalmanFilter(state, fine, wrong), deviations) << wrong;
    }
    EXPECT_DEATH(filter.correct(Vector::of(1)), "do not fit each other");
    EXPECT_DEATH(filter.correct(Vector::of(1, NOT_A_NUMBER)), "the measurement is not finite");
    EXPECT_DEATH(KalmanFilter(state, fine, Vector::of(1, 0)), "a measurement deviation is 0");
    for (const double time : {-0.1, NOT_A_NUMBER})
        ASSERT_DEATH(filter.predict(time), "the time is before the state's");
    SquareMatrix noise(2);
    EXPECT_DEATH(filter.correct(fine, noise), "not symmetric and positive definite");
    eigenMap(noise).setIdentity();
    noise(0, 1) = 0.5;
    EXPECT_DEATH(filter.correct(fine, noise), "not symmetric and positive definite");
    noise(0, 1) = 0.0;
    Matrix unknown(2, 2);
    unknown.fill(NOT_A_NUMBER);
    EXPECT_DEATH(filter.correct(fine, unknown, noise), "the measurement is not finite");
    EXPECT_DEATH(filter.correct(fine, Matrix(2, 3), noise), "do not fit each other");
    EXPECT_DEATH(filter.correct(Vector(3), Matrix(3, 2), noise), "do not fit each other");
    EXPECT_DEATH(filter.mahalanobisDistance(Vector::of(1)), "with poseDoF\\(\\) elements");
    for (const double wrong : {-100.0, NOT_A_NUMBER}) {
        filter.covariance()(0, 0) = wrong;
        ASSERT_DEATH(filter.mahalanobisDistance(fine), "state's covariance is not positive semidefinite");
    }
    filter.covariance() = SquareMatrix(3);
    EXPECT_DEATH(filter.predict(1.0), "has changed its dimension");
}

/// How likely a measurement of 3 and 4 with a deviation of 1 is.
double gaussian(const State& state) {
    const Vector pose = state.getPoseData();
    return std::exp(-(std::pow(pose[0] - 3.0, 2) + std::pow(pose[1] - 4.0, 2)) / 2.0);
}

struct ParticleFilterTest : testing::Test {
    ParticleFilter filter{counting(2, 2), 2000, all(4, 1.0), all(2, 0.5), 1};
    ~ParticleFilterTest() override { cv::setNumThreads(-1); }
};

TEST_F(ParticleFilterTest, ItsMeanIsTheKalmanFilters) {
    KalmanFilter exact(counting(2, 2), all(2, 0.5), all(2, 1.0));
    eigenMap(exact.covariance()).setIdentity();
    ParticleFilter particles(counting(2, 2), 20000, all(4, 1.0), all(2, 0.5));
    for (const double time : {0.5, 1.0, 1.7}) {
        exact.predict(time);
        particles.predict(time);
        exact.correct(Vector::of(3, 4));
        ASSERT_TRUE(particles.correct([](const State& state) { return 1e-300 * gaussian(state); })) << "any scale";
        ASSERT_EQ(particles.state().getTimeStamp(), time);
        const Vector expected = vectorOf(exact.state()), mean = vectorOf(particles.state());
        for (unsigned int i = 0; i < 4; ++i)
            ASSERT_NEAR(mean[i], expected[i], 0.2 * std::sqrt(exact.covariance()(i, i))) << i << " at " << time;
    }
}

TEST_F(ParticleFilterTest, MovesByTheKalmanFiltersNoise) {
    KalmanFilter exact(counting(1, 3), all(1, 2.0), all(1, 1.0));
    ParticleFilter particles(counting(1, 3), 20000, all(3, 0.0), all(1, 2.0));
    exact.covariance().fill(0.0);
    exact.predict(0.5);
    for (const double time : {0.2, 0.5})  // with other random numbers in the second step
        particles.predict(time);
    const Eigen::MatrixXd centred =
        eigenMap(particles.particles()).rowwise() - eigenMap(vectorOf(exact.state())).col(0).transpose();
    const Eigen::MatrixXd ratios = (centred.transpose() * centred / 20000).cwiseQuotient(eigenMap(exact.covariance()));
    EXPECT_TRUE(((ratios.array() - 1.0).abs() < 0.05).all()) << ratios;
}

TEST_F(ParticleFilterTest, TheSameSeedGivesTheSameOnOneThreadAndOnTwo) {
    ParticleFilter one = filter, other(counting(2, 2), 2000, all(4, 1.0), all(2, 0.5), 2);
    EXPECT_NE(elementsOf(other.particles()), elementsOf(one.particles())) << "another seed";
    const auto run = [](ParticleFilter& particles, int threads) {
        cv::setNumThreads(threads);
        for (const double time : {0.5, 1.0}) {
            particles.predict(time);
            particles.correct(gaussian);
        }
    };
    run(one, 1);
    run(filter, 2);
    EXPECT_TRUE(elementsOf(one.particles()) == elementsOf(filter.particles()));
    EXPECT_EQ(elementsOf(vectorOf(one.state())), elementsOf(vectorOf(filter.state())));
}

TEST_F(ParticleFilterTest, ResamplesWhenFewerThanHalfAreEffective) {
    EXPECT_EQ(filter.effectiveParticles(), 2000.0);
    ASSERT_EQ(filter.particles().rows(), 2000U);
    const std::vector<double> before = elementsOf(filter.particles());
    filter.correct([](const State& state) { return state.getPoseData()[0] > 1.0 ? 1.0 : 0.7; });
    EXPECT_TRUE(elementsOf(filter.particles()) == before) << "most are effective";
    filter.correct([](const State& state) { return state.getPoseData()[0] > 2.0 ? 1.0 : 0.0; });
    EXPECT_LT(filter.effectiveParticles(), 400.0);
    const State mean = filter.state();
    for (unsigned int i = 0; i < 2000; ++i)
        ASSERT_GT(filter.particles()(i, 0), 2.0) << "particle " << i << " is not likely";
    filter.correct([](const State&) { return 7.0; });
    EXPECT_NEAR(filter.effectiveParticles(), 2000.0, 1e-6) << "all weigh the same again";
    EXPECT_NEAR(filter.state().getPoseData()[0], mean.getPoseData()[0], 0.05);
}

TEST_F(ParticleFilterTest, IsUnchangedWithoutALikelyParticleAndWhenTheLikelihoodThrows) {
    EXPECT_TRUE(filter.correct([](const State& state) { return state.getPoseData()[0] < 0.5 ? 0.0 : 1.0; }));
    EXPECT_FALSE(filter.correct([](const State& state) { return state.getPoseData()[0] < 0.5 ? 1.0 : 0.0; }));
    filter.predict(0.5);
    filter.correct(gaussian);
    const ParticleFilter before = filter;
    EXPECT_FALSE(filter.correct([](const State&) { return 0.0; }));
    EXPECT_THROW(filter.correct([](const State& state) -> double {
        return state.getPoseData()[0] > 3.0 ? throw std::domain_error("no colours there") : 1.0;
    }),
                 std::domain_error);
    EXPECT_TRUE(elementsOf(filter.particles()) == elementsOf(before.particles()));
    EXPECT_EQ(filter.effectiveParticles(), before.effectiveParticles());
    EXPECT_EQ(elementsOf(vectorOf(filter.state())), elementsOf(vectorOf(before.state())));
}

TEST_F(ParticleFilterTest, AbortsOnBrokenContracts) {
    const State state = counting(2, 2);
    EXPECT_DEATH(ParticleFilter(state, 0, all(4, 1), all(2, 1)), "no particles");
    EXPECT_DEATH(ParticleFilter(state, 9, all(2, 1), all(2, 1)), "initial deviation: 2 of 4 elements");
    EXPECT_DEATH(ParticleFilter(state, 9, all(4, 1), all(4, 1)), "process deviation: 4 of 2 elements");
    EXPECT_THROW(ParticleFilter(state, static_cast<std::size_t>(-1), all(4, 1), all(2, 1)), std::bad_alloc);
    EXPECT_DEATH(filter.predict(-1.0), "the time is before the state's");
    EXPECT_DEATH(filter.correct(nullptr), "there is no likelihood");
    cv::setNumThreads(1);
    for (const double wrong : {-1.0, NOT_A_NUMBER, std::numeric_limits<double>::infinity()})
        ASSERT_DEATH(filter.correct([=](const State&) { return wrong; }), "a likelihood is negative or not finite");
}

}  // namespace
