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

namespace {

std::vector<double> elements(const Matrix& matrix) { return {matrix.data(), matrix.data() + matrix.dimension()}; }

Matrix counting(unsigned int rows, unsigned int cols) {
    Matrix matrix(rows, cols);
    for (unsigned int i = 0; i < matrix.dimension(); ++i) matrix.data()[i] = i + 1;
    return matrix;
}

TEST(MatrixTest, ElementsAreStoredRowByRow) {
    const std::unique_ptr<Matrix> matrix = std::make_unique<Matrix>(2, 3);
    EXPECT_EQ(elements(*matrix), std::vector<double>(6));
    matrix->fill(0.5);
    (*matrix)(1, 0) = 7.0;
    eigenMap (*matrix)(1, 2) = 9.0;
    EXPECT_THAT(elements(*matrix), ElementsAre(0.5, 0.5, 0.5, 7.0, 0.5, 9.0));
    EXPECT_THROW((*matrix)(0, 3), std::out_of_range);
    EXPECT_THROW(Matrix(65536, 65536), std::bad_alloc);
    const Vector vector(2);
    EXPECT_EQ(vector[1] = 4.0, vector.data()[1]) << "written through const";
}

TEST(MatrixTest, AssignmentTakesTheShapeOfTheSource) {
    static_assert(std::is_nothrow_move_constructible_v<Vector> && std::is_nothrow_move_assignable_v<SquareMatrix>);
    for (const unsigned int size : {0U, 2U, 4U, 5U, 9U}) {  // up to 4 x 4 inside the object, larger ones on the heap
        const Matrix source = counting(size, size);
        for (Matrix target : {counting(1, 2), counting(6, 6)}) {
            target = source;
            target = static_cast<const Matrix&>(target);
            EXPECT_EQ(elements(target), elements(source));
            EXPECT_EQ(target.rows(), size);
            Matrix moved = std::move(target);
            EXPECT_EQ(elements(moved), elements(source));
            EXPECT_EQ(target.rows() + target.cols() + target.dimension(), 0U);
            target = counting(1, 3);
            EXPECT_THAT(elements(target), ElementsAre(1, 2, 3));
        }
    }
}

TEST(SquareMatrixTest, InvertsWhatCanBeInverted) {
    SquareMatrix matrix(2);
    eigenMap(matrix) << 4, 7, 2, 6;
    const Matrix::InversionMethod method{};
    EXPECT_TRUE(eigenMap(matrix.invert(method)).isApprox((Eigen::Matrix2d() << 0.6, -0.7, -0.2, 0.4).finished()));
    EXPECT_EQ(SquareMatrix(0).invert(method).dimension(), 0U);
    EXPECT_THROW(matrix.invert(static_cast<Matrix::InversionMethod>(1)), std::invalid_argument);
    matrix(0, 0) = std::nan("");
    EXPECT_THROW(matrix.invert(method), std::domain_error);
    eigenMap(matrix) << 4, 7, 2, 3.5;
    EXPECT_THAT([&] { matrix.invert(method); }, testing::ThrowsMessage<std::domain_error>(testing::HasSubstr("2x2")));
    static_cast<Matrix&>(matrix) = Matrix(2, 3);
    EXPECT_THROW(matrix.invert(method), std::domain_error);
}

TEST(MatrixTest, PrintsOneLineARow) {
    std::ostringstream text;
    text.precision(3);
    text << counting(2, 2) << '|' << counting(3, 1) << '|' << Vector() << '|' << Vector2(3, 4.5) << Vector4();
    EXPECT_EQ(text.str(), "[1, 2]\n[3, 4]|[1, 2, 3]|[]|[3, 4.5][0, 0, 0, 0]");
}

}  // namespace
