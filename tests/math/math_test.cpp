#include "support/Poses.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tarvos/math/EigenMap.h>
#include <tarvos/math/SquareMatrix.h>
#include <tarvos/math/Vector.h>
#include <tarvos/math/Vector2.h>
#include <tarvos/math/Vector4.h>

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <iterator>
#include <numeric>
#include <sstream>

using namespace tarvos::math;
using testing::ElementsAre;

namespace {

Matrix counting(unsigned int rows, unsigned int cols) {
    Matrix matrix(rows, cols);
    std::iota(matrix.begin(), matrix.end(), 1.0);
    return matrix;
}

TEST(MatrixTest, ElementsAreStoredRowByRow) {
    Matrix matrix(2, 3);
    EXPECT_EQ(elementsOf(matrix), std::vector<double>(6));
    matrix.fill(0.5);
    matrix(1, 0) = 7.0;
    eigenMap(matrix)(1, 2) = 9.0;
    EXPECT_THAT(elementsOf(matrix), ElementsAre(0.5, 0.5, 0.5, 7.0, 0.5, 9.0));
    const Matrix& read = matrix;
    EXPECT_EQ(read(1, 2), 9.0);
    for (const auto& [row, col] : {std::pair{0U, 3U}, {2U, 0U}}) {
        EXPECT_THROW(matrix(row, col), std::out_of_range);
        EXPECT_THROW(read(row, col), std::out_of_range);
    }
    EXPECT_THROW(Matrix(65536, 65536), std::bad_alloc);
    EXPECT_THAT(elementsOf(Vector::of(1, 2.5F, 3U)), ElementsAre(1, 2.5, 3));
}

TEST(MatrixTest, MovingLeavesNoElements) {
    Matrix source = counting(6, 6);
    const Matrix moved = std::move(source);
    EXPECT_EQ(elementsOf(moved), elementsOf(counting(6, 6)));
    EXPECT_EQ(source.rows(), 0U);
    EXPECT_EQ(source.cols(), 0U);
}

TEST(SquareMatrixTest, InvertsMatricesOfAnySizeInMixedUnits) {
    const auto unit = [](unsigned int i) { return std::pow(10.0, 50.0 * i - 150.0); };
    for (unsigned int size = 0; size < 7; ++size) {
        SquareMatrix matrix(size);
        for (unsigned int i = 0; i < size * size; ++i)
            matrix(i / size, i % size) = (i / size == i % size ? 2.0 : 1.0) * unit(i / size) * unit(i % size);
        const SquareMatrix inverse = matrix.invert(Matrix::INVERSION_LU);
        for (unsigned int i = 0; i < size * size; ++i)
            EXPECT_NEAR(inverse(i / size, i % size) * unit(i / size) * unit(i % size),
                        (i / size == i % size ? 1.0 : 0.0) - 1.0 / (size + 1), 1e-12)
                << "of size " << size;
    }
}

TEST(SquareMatrixTest, ThrowsWhereThereIsNoFiniteInverse) {
    SquareMatrix matrix(2);
    EXPECT_THROW(matrix.invert(static_cast<Matrix::InversionMethod>(1)), std::invalid_argument);
    const double singular[][4] = {{4, 7, 2, 3.5}, {std::nan(""), 0, 0, 1}, {1e-310, 0, 0, 1e-310}};
    for (const auto& elements : singular) {
        std::copy(std::begin(elements), std::end(elements), matrix.begin());
        EXPECT_THAT([&] { matrix.invert(Matrix::INVERSION_LU); },
                    testing::ThrowsMessage<std::domain_error>("cannot invert a singular 2x2 matrix"))
            << matrix;
    }
    SquareMatrix ranks(3);
    std::iota(ranks.begin(), ranks.end(), 1.0);
    EXPECT_THROW(ranks.invert(Matrix::INVERSION_LU), std::domain_error) << "1 to 9";
    static_cast<Matrix&>(matrix) = Matrix(2, 3);
    EXPECT_THROW(matrix.invert(Matrix::INVERSION_LU), std::domain_error);
}

TEST(MatrixTest, PrintsOneLineARow) {
    std::ostringstream text;
    text.precision(3);
    text << counting(2, 2) << '|' << counting(3, 1) << '|' << Vector() << '|' << Vector2(3, 4.5) << Vector4();
    EXPECT_EQ(text.str(), "[1, 2]\n[3, 4]|[1, 2, 3]|[]|[3, 4.5][0, 0, 0, 0]");
    text.str("");
    text << std::setw(4) << counting(2, 1) << 5 << Vector2(100, 1) << std::setw(3) << counting(1, 2);
    EXPECT_EQ(text.str(), "[   1,    2]5[100, 1][  1,   2]") << "the width is each element's, then gone";
}

}  // namespace
