#pragma once

#include <tarvos/math/Export.h>

#include <array>
#include <cstddef>
#include <iosfwd>
#include <utility>
#include <vector>

namespace tarvos::math {

/// A dense matrix of doubles, stored row by row in one contiguous array.
///
/// Up to 9 elements (a 3 x 3 matrix) live inside the object, so that the small vectors and matrices of a tracker cost
/// no heap allocation. A new matrix is zero. Copying, by construction or assignment, takes the source's shape; a
/// moved-from matrix is 0 x 0. Impossible sizes throw `std::bad_alloc` or a class derived from it.
///
/// @snippet math.cpp matrix
/// @ingroup math
class TARVOS_MATH_EXPORT Matrix {
public:
    /// How SquareMatrix::invert works.
    enum InversionMethod {
        INVERSION_LU = 0  ///< LU decomposition with full pivoting, for any invertible matrix.
    };

    /// A 0 x 0 matrix.
    Matrix() noexcept = default;
    /// A zero matrix.
    Matrix(unsigned int rows, unsigned int cols);
    /// An independent copy.
    Matrix(const Matrix& other) = default;
    /// Takes over the elements; @p other becomes 0 x 0.
    Matrix(Matrix&& other) noexcept { *this = std::move(other); }
    /// Takes the shape and the elements of @p other, even through a `Matrix&` to a derived object.
    Matrix& operator=(const Matrix& other) = default;
    /// Takes over the elements; @p other becomes 0 x 0, unless it is this matrix.
    Matrix& operator=(Matrix&& other) noexcept {
        if (this != &other) {
            mOutside = std::move(other.mOutside);
            mInside = other.mInside;
            mRows = std::exchange(other.mRows, 0U);
            mCols = std::exchange(other.mCols, 0U);
        }
        return *this;
    }
    virtual ~Matrix() = default;

    /// The number of elements: rows() * cols().
    virtual unsigned int dimension() const { return mRows * mCols; }
    /// Sets every element to @p value.
    virtual void fill(double value);
    /// The element at (@p row, @p col), counted from 0. Throws `std::out_of_range` outside the matrix.
    virtual double& operator()(unsigned int row, unsigned int col) { return data()[indexOf(row, col)]; }
    /// The value of that element. Throws `std::out_of_range` outside the matrix.
    virtual double operator()(unsigned int row, unsigned int col) const { return data()[indexOf(row, col)]; }

    /// The number of rows.
    unsigned int rows() const noexcept { return mRows; }
    /// The number of columns.
    unsigned int cols() const noexcept { return mCols; }

    /// The elements, row by row: element (r, c) is `data()[r * cols() + c]`. The pointer is valid until the matrix is
    /// assigned to, moved from or destroyed.
    double* data() noexcept { return elements(); }
    /// The elements, read-only.
    const double* data() const noexcept { return elements(); }

    /// The first element, for loops and algorithms; they run row by row.
    double* begin() noexcept { return data(); }
    /// Past the end.
    double* end() noexcept { return data() + std::size_t{mRows} * mCols; }
    /// The first element, read-only.
    const double* begin() const noexcept { return data(); }
    /// Past the end.
    const double* end() const noexcept { return data() + std::size_t{mRows} * mCols; }

protected:
    /// The elements; writable because Vector::operator[] returns a writable element of a const vector.
    double* elements() const noexcept {
        return mOutside.empty() ? mInside.data() : const_cast<double*>(mOutside.data());
    }

private:
    std::vector<double> mOutside;  ///< the elements if they are more than fit inside
    mutable std::array<double, 9> mInside{};
    unsigned int mRows = 0;
    unsigned int mCols = 0;

    std::size_t indexOf(unsigned int row, unsigned int col) const {
        if (row >= mRows || col >= mCols)
            throwOutOfRange(row, col);
        return std::size_t{row} * mCols + col;
    }
    [[noreturn]] void throwOutOfRange(unsigned int row, unsigned int col) const __attribute__((cold));
};

/// Writes @p matrix with the stream's format: a single column as "[a, b, c]" on one line, any other shape with one such
/// line per row. The stream's width holds for each element, and is 0 afterwards; without one, the columns of a matrix
/// are aligned. No newline follows the last row.
TARVOS_MATH_EXPORT std::ostream& operator<<(std::ostream& stream, const Matrix& matrix);

}  // namespace tarvos::math
