#include "math/EigenMap.h"
#include "math/SquareMatrix.h"
#include "math/Vector.h"
#include "math/Vector2.h"
#include "math/Vector4.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <type_traits>

using namespace tarvos::math;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

std::vector<double> elements(const Matrix& matrix) {
    return {matrix.data(), matrix.data() + matrix.dimension()};
}

Matrix counting(unsigned int rows, unsigned int cols) {
    Matrix matrix(rows, cols);
    for (unsigned int i = 0; i < matrix.dimension(); ++i)
        matrix.data()[i] = i + 1;
    return matrix;
}

TEST(MatrixTest, StartsAtZeroAndIsIndexedRowByRow) {
    Matrix matrix(2, 3);
    EXPECT_THAT(elements(matrix), ElementsAre(0, 0, 0, 0, 0, 0));
    matrix(1, 0) = 7.0;
    EXPECT_EQ(matrix.data()[3], 7.0);
    EXPECT_THROW(matrix(0, 3), std::out_of_range);
    EXPECT_THROW(matrix(2, 0), std::out_of_range);
    EXPECT_THROW(Matrix(65536, 65536), std::bad_alloc);
}

TEST(MatrixTest, OperationsAreVirtual) {
    const std::unique_ptr<Matrix> matrix = std::make_unique<Vector>(2);
    matrix->fill(0.5);
    (*matrix)(1, 0) = 2.0;
    EXPECT_EQ(matrix->dimension(), 2U);
    EXPECT_THAT(elements(*matrix), ElementsAre(0.5, 2.0));
}

TEST(MatrixTest, AssignmentTakesTheShapeOfTheSource) {
    for (const unsigned int size :
         {0U, 2U, 4U, 5U, 9U}) {  // up to 4 x 4 inside the object, larger ones on the heap
        const Matrix source = counting(size, size);
        for (Matrix target : {counting(1, 2), counting(6, 6)}) {
            target = source;
            EXPECT_EQ(elements(target), elements(source));
            EXPECT_EQ(target.rows(), size);
            const Matrix& alias = target;
            target = alias;
            EXPECT_EQ(elements(target), elements(source));
            Matrix moved = std::move(target);
            EXPECT_EQ(elements(moved), elements(source));
            EXPECT_EQ(target.rows() + target.cols() + target.dimension(),
                      0U);  // NOLINT(bugprone-use-after-move)
            target = counting(1, 3);
            EXPECT_THAT(elements(target), ElementsAre(1, 2, 3));
        }
    }
    static_assert(std::is_nothrow_move_constructible_v<Vector> &&
                  std::is_nothrow_move_assignable_v<SquareMatrix>);
}

TEST(VectorTest, SubscriptWritesThroughConst) {
    const Vector vector(3);
    vector[2] = 4.0;
    EXPECT_THAT(elements(vector), ElementsAre(0, 0, 4));
}

TEST(FixedVectorTest, ConvertsToAVector) {
    Vector2 point(3, 4.5);
    point[0] += 1;
    EXPECT_THAT(elements(static_cast<Vector>(point)), ElementsAre(4, 4.5));
    EXPECT_EQ(sizeof(Vector4), 4 * sizeof(double));
    std::ostringstream text;
    text << point << Vector4();
    EXPECT_EQ(text.str(), "[4, 4.5][0, 0, 0, 0]");
}

TEST(SquareMatrixTest, InvertsWhatCanBeInverted) {
    SquareMatrix matrix(2);
    matrix(0, 0) = 4;
    matrix(0, 1) = 7;
    matrix(1, 0) = 2;
    matrix(1, 1) = 6;
    const Matrix::InversionMethod method{};
    EXPECT_TRUE(
        eigenMap(matrix.invert(method)).isApprox((Eigen::Matrix2d() << 0.6, -0.7, -0.2, 0.4).finished()));
    EXPECT_EQ(SquareMatrix(0).invert(method).dimension(), 0U);

    matrix(1, 1) = 3.5;
    try {
        matrix.invert(method);
        FAIL() << "a singular matrix was inverted";
    } catch (const std::domain_error& error) {
        EXPECT_THAT(error.what(), HasSubstr("2x2"));
    }
    matrix(0, 0) = std::nan("");
    EXPECT_THROW(matrix.invert(method), std::domain_error);
    static_cast<Matrix&>(matrix) = Matrix(2, 3);
    EXPECT_THROW(matrix.invert(method), std::domain_error);
    EXPECT_THROW(matrix.invert(static_cast<Matrix::InversionMethod>(1)), std::invalid_argument);
}

TEST(EigenMapTest, SharesTheElements) {
    Matrix matrix = counting(2, 3);
    eigenMap(matrix)(1, 2) = 60.0;
    EXPECT_THAT(elements(matrix), ElementsAre(1, 2, 3, 4, 5, 60));
}

TEST(MatrixTest, PrintsOneLineARow) {
    std::ostringstream text;
    text.precision(3);
    text << counting(2, 2) << '|' << counting(3, 1) << '|' << Vector();
    EXPECT_EQ(text.str(), "[1, 2]\n[3, 4]|[1, 2, 3]|[]");
}

}  // namespace
