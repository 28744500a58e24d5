/// @file
/// The math types beside Eigen's, and packing a State beside the limit, a copy of its numbers.

#include "core/trackingdata/State.h"
#include "math/SquareMatrix.h"

#include <Eigen/Dense>
#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

namespace {

using tarvos::math::Matrix;
using tarvos::math::SquareMatrix;
using tarvos::math::Vector;

void vectorCopy(benchmark::State& state) {
    const Vector source(static_cast<unsigned int>(state.range(0)));
    for (auto _ : state) {
        Vector copy(source);
        benchmark::DoNotOptimize(copy.data());
    }
}
void eigenVectorCopy(benchmark::State& state) {
    const Eigen::VectorXd source = Eigen::VectorXd::Zero(state.range(0));
    for (auto _ : state) {
        Eigen::VectorXd copy(source);
        benchmark::DoNotOptimize(copy.data());
    }
}
BENCHMARK(vectorCopy)->Arg(4)->Arg(16)->Arg(64);
BENCHMARK(eigenVectorCopy)->Arg(4)->Arg(16)->Arg(64);

void matrixInvert(benchmark::State& state) {
    SquareMatrix matrix(4);
    for (unsigned int i = 0; i < 4; ++i)
        matrix(i, i) = 2.0;
    for (auto _ : state)
        benchmark::DoNotOptimize(matrix.invert(Matrix::INVERSION_LU));
}
void eigenInvert(benchmark::State& state) {
    const Eigen::MatrixXd matrix = 2.0 * Eigen::MatrixXd::Identity(4, 4);
    for (auto _ : state) {
        const Eigen::MatrixXd inverse = matrix.fullPivLu().inverse();
        benchmark::DoNotOptimize(inverse.data());
    }
}
BENCHMARK(matrixInvert);
BENCHMARK(eigenInvert);

class PlainPose : public tarvos::core::cvdata::Pose {
public:
    explicit PlainPose(int size) : Pose(size, size) {}
    PlainPose* clone() const override { return new PlainPose(*this); }
    void setData(const Vector& data) override { *mData = data; }
    void setIncData(const Vector& incData) override { *mIncData = incData; }
    void resetData() override { mData->fill(0.0); }
    void resetIncData() override { mIncData->fill(0.0); }
    void updateData() override {}
    void updateIncData() override {}
    using Pose::operator=;
};

void statePack(benchmark::State& state) {
    PlainPose pose(static_cast<int>(state.range(0)));
    const tarvos::core::State target(pose, 3);
    Vector packed(static_cast<unsigned int>(target.stateIncDimension()));
    for (auto _ : state) {
        target.getStateIncData(packed, -1);
        benchmark::ClobberMemory();
    }
}
void memoryCopy(benchmark::State& state) {
    const std::vector<double> source(static_cast<std::size_t>(3 * state.range(0)));
    std::vector<double> target(source);
    for (auto _ : state) {
        std::memcpy(target.data(), source.data(), source.size() * sizeof(double));
        benchmark::ClobberMemory();
    }
}
BENCHMARK(statePack)->Arg(4)->Arg(32);
BENCHMARK(memoryCopy)->Arg(4)->Arg(32);

}  // namespace
