#pragma once

#include <tarvos/math/Matrix.h>

namespace tarvos::math {

/// An n x n matrix of doubles. A new one is zero; assignment takes the source's size.
///
/// @snippet math.cpp inverse
/// @ingroup math
class TARVOS_MATH_EXPORT SquareMatrix : public Matrix {
public:
    /// A 0 x 0 matrix.
    SquareMatrix() noexcept = default;
    /// An @p n x @p n zero matrix.
    explicit SquareMatrix(unsigned int n) : Matrix(n, n) {}

    /// The inverse. Throws `std::domain_error`, naming the size, for a matrix that is singular to working precision
    /// (with rows and columns scaled to elements near 1, a pivot below n times the machine epsilon times the largest
    /// pivot), that contains a NaN, whose inverse exceeds the largest double, or that was assigned another shape
    /// through a `Matrix&`; `std::invalid_argument` if @p method is not a valid enumerator.
    SquareMatrix invert(const Matrix::InversionMethod& method) const;
};

}  // namespace tarvos::math
