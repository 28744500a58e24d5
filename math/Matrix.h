#pragma once

#include "math/Export.h"

#include <boost/container/small_vector.hpp>

#include <iosfwd>

namespace tarvos::math {

/// A dense matrix of doubles, stored row by row in one contiguous array.
///
/// Up to 16 elements (a 4 x 4 matrix) live inside the object, so that the small matrices of a tracker cost no heap
/// allocation. A new matrix is zero. Copying, by construction or assignment, takes the source's shape; a moved-from
/// matrix is 0 x 0. Shapes that no array can have throw `std::bad_alloc` or a class derived from it.
///
/// Class invariant: rows() * cols() elements are stored.
///
/// @code
/// Matrix matrix(2, 3);
/// matrix(1, 2) = 4.0;
/// std::cout << matrix << std::endl;                      // [0, 0, 0] and [0, 0, 4] on two lines
/// eigenMap(matrix) *= 2.0;                               // with math/EigenMap.h
/// @endcode
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
    Matrix(Matrix&& other) noexcept;
    /// Takes the shape and the elements of @p other, also through a `Matrix&` to a derived object.
    Matrix& operator=(const Matrix& other) = default;
    /// Takes over the elements; @p other becomes 0 x 0, unless it is this matrix.
    Matrix& operator=(Matrix&& other) noexcept;
    virtual ~Matrix();

    /// The number of elements: rows() * cols().
    virtual unsigned int dimension() const;
    /// Sets every element to @p value.
    virtual void fill(double value);
    /// The element at (@p row, @p col), counted from 0. Throws `std::out_of_range` outside the matrix.
    virtual double& operator()(unsigned int row, unsigned int col);
    /// The value of that element. Throws `std::out_of_range` outside the matrix.
    virtual double operator()(unsigned int row, unsigned int col) const;

    /// The number of rows.
    unsigned int rows() const noexcept { return mRows; }
    /// The number of columns.
    unsigned int cols() const noexcept { return mCols; }

    /// The elements, row by row: element (r, c) is `data()[r * cols() + c]`. The pointer is valid until the matrix is
    /// assigned to, moved from or destroyed.
    double* data() noexcept { return mElements.data(); }
    /// The elements, to be read only.
    const double* data() const noexcept { return mElements.data(); }

protected:
    /// Mutable because Vector::operator[] hands out a writable element of a const vector.
    mutable boost::container::small_vector<double, 16> mElements;

private:
    unsigned int mRows = 0;
    unsigned int mCols = 0;

    std::size_t indexOf(unsigned int row, unsigned int col) const;
};

/// Writes @p matrix with the stream's precision: a single column as "[a, b, c]" on one line, any other shape with one
/// such line a row, columns aligned. No newline follows the last row.
TARVOS_MATH_EXPORT std::ostream& operator<<(std::ostream& stream, const Matrix& matrix);

}  // namespace tarvos::math
