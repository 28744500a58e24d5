#pragma once

#include "Export.h"

#include <cstddef>
#include <cstring>
#include <iosfwd>
#include <memory>
#include <utility>

namespace tarvos::math {

/// A dense matrix of doubles, stored row by row in one contiguous array.
///
/// Up to 9 elements (a 3 x 3 matrix) live inside the object, so that the small vectors and matrices of a tracker cost
/// no heap allocation. A new matrix is zero. Copying, by construction or assignment, takes the source's shape; a
/// moved-from matrix is 0 x 0. Shapes that no array can have throw `std::bad_alloc` or a class derived from it.
///
/// Class invariant: rows() * cols() elements are stored.
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
    Matrix(unsigned int rows, unsigned int cols) : mRows(rows), mCols(cols) {
        if (count() > MOST_INSIDE)
            makeOutside();
    }
    /// An independent copy.
    Matrix(const Matrix& other) : mRows(other.mRows), mCols(other.mCols) {
        if (other.mOutside == nullptr)
            std::memcpy(mInside, other.mInside, sizeof mInside);
        else
            copyOutside(other);
    }
    /// Takes over the elements; @p other becomes 0 x 0.
    Matrix(Matrix&& other) noexcept { takeOver(other); }
    /// Takes the shape and the elements of @p other, also through a `Matrix&` to a derived object.
    Matrix& operator=(const Matrix& other) {
        if (this == &other)
            return *this;
        if (mOutside != nullptr || other.mOutside != nullptr)
            assignOutside(other);
        else
            std::memcpy(mInside, other.mInside, sizeof mInside);
        mRows = other.mRows;
        mCols = other.mCols;
        return *this;
    }
    /// Takes over the elements; @p other becomes 0 x 0, unless it is this matrix.
    Matrix& operator=(Matrix&& other) noexcept {
        if (this != &other)
            takeOver(other);
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

    /// Whether the elements live inside the object, so that copying it into another such one cannot fail.
    bool isInside() const noexcept { return mOutside == nullptr; }

    /// The elements, row by row: element (r, c) is `data()[r * cols() + c]`. The pointer is valid until the matrix is
    /// assigned to, moved or destroyed.
    double* data() noexcept { return elements(); }
    /// The elements, to be read only.
    const double* data() const noexcept { return elements(); }

    /// The first element, for loops and algorithms; they run row by row.
    double* begin() noexcept { return data(); }
    /// Behind the last element.
    double* end() noexcept { return data() + count(); }
    /// The first element, to be read only.
    const double* begin() const noexcept { return data(); }
    /// Behind the last element.
    const double* end() const noexcept { return data() + count(); }

protected:
    /// The elements; writable because Vector::operator[] hands out a writable element of a const vector.
    double* elements() const noexcept { return mOutside != nullptr ? mOutside.get() : mInside; }

private:
    static constexpr std::size_t MOST_INSIDE = 9;

    std::unique_ptr<double[]> mOutside;  ///< the elements if they are more than MOST_INSIDE
    unsigned int mRows = 0;
    unsigned int mCols = 0;
    mutable double mInside[MOST_INSIDE] = {};

    std::size_t count() const noexcept { return std::size_t{mRows} * mCols; }
    std::size_t indexOf(unsigned int row, unsigned int col) const {
        if (row >= mRows || col >= mCols)
            throwOutOfRange(row, col);
        return std::size_t{row} * mCols + col;
    }
    void takeOver(Matrix& other) noexcept {
        mOutside = std::move(other.mOutside);
        mRows = std::exchange(other.mRows, 0U);
        mCols = std::exchange(other.mCols, 0U);
        std::memcpy(mInside, other.mInside, sizeof mInside);
    }
    void makeOutside();
    void copyOutside(const Matrix& other);
    void assignOutside(const Matrix& other);
    [[noreturn]] void throwOutOfRange(unsigned int row, unsigned int col) const __attribute__((cold));
};

/// Writes @p matrix with the stream's precision: a single column as "[a, b, c]" on one line, any other shape with one
/// such line a row, columns aligned. No newline follows the last row.
TARVOS_MATH_EXPORT std::ostream& operator<<(std::ostream& stream, const Matrix& matrix);

}  // namespace tarvos::math
