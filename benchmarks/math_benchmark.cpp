/// @file
/// The math types beside Eigen's.

#include "Comparison.h"

#include <Eigen/Dense>
#include <tarvos/math/EigenMap.h>
#include <tarvos/math/SquareMatrix.h>
#include <tarvos/math/Vector.h>

namespace {

using comparison::compare;
using tarvos::math::Matrix;
using tarvos::math::SquareMatrix;
using tarvos::math::Vector;

void addCopies(unsigned int size) {
    compare(
        "Vector copy, " + std::to_string(size) + " elements", "VectorXd", 1.5,
        [source = Vector(size)] {
            Vector copy(source);
            benchmark::DoNotOptimize(copy.data());
        },
        [source = Eigen::VectorXd(size)] {
            Eigen::VectorXd copy(source);
            benchmark::DoNotOptimize(copy.data());
        });
}

/// Reads elements by row and column, many times over, in a function that knows the type of the matrix.
template <typename AnyMatrix>
double readAll(unsigned int size, AnyMatrix matrix) {
    double sum = 0.0;
    for (int round = 0; round < 16; ++round) {
        for (unsigned int row = 0; row < size; ++row)
            for (unsigned int col = 0; col < size; ++col)
                sum += matrix(row, col) * matrix(col, row);
        benchmark::ClobberMemory();
    }
    return sum;
}

void addElements(unsigned int size) {
    compare(
        "SquareMatrix elements, " + std::to_string(size) + "x" + std::to_string(size), "MatrixXd", 2.0,
        [size] { benchmark::DoNotOptimize(readAll(size, SquareMatrix(size))); },
        [size] { benchmark::DoNotOptimize(readAll<Eigen::MatrixXd>(size, Eigen::MatrixXd::Zero(size, size))); });
}

void addInverse(unsigned int size) {
    SquareMatrix matrix(size);
    eigenMap(matrix).setRandom();
    eigenMap(matrix).diagonal().array() += 3.0;
    const Eigen::MatrixXd same = eigenMap(matrix);
    compare(
        "invert, " + std::to_string(size) + "x" + std::to_string(size) + "", "MatrixXd::inverse", 1.0,
        [matrix] { benchmark::DoNotOptimize(matrix.invert(Matrix::INVERSION_LU).data()); },
        [same] {
            const Eigen::MatrixXd inverse = same.inverse();
            benchmark::DoNotOptimize(inverse.data());
        });
}

}  // namespace

int main(int argc, char** argv) {
    for (const unsigned int size : {4U, 9U, 64U})
        addCopies(size);
    for (const unsigned int size : {2U, 3U, 4U})
        addElements(size);
    for (const unsigned int size : {2U, 3U, 4U})
        addInverse(size);
    return comparison::run(argc, argv);
}
