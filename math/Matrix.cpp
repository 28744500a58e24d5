#include "math/Matrix.h"

#include "math/EigenMap.h"

#include <algorithm>
#include <limits>
#include <new>
#include <ostream>
#include <stdexcept>
#include <string>
#include <utility>

namespace tarvos::math {

Matrix::Matrix(unsigned int rows, unsigned int cols) : mRows(rows), mCols(cols) {
    const auto count = std::uint64_t{rows} * cols;
    if (count > std::numeric_limits<unsigned int>::max())
        throw std::bad_array_new_length();
    mElements.resize(static_cast<std::size_t>(count), 0.0);
}

Matrix::Matrix(Matrix&& other) noexcept {
    *this = std::move(other);
}

Matrix& Matrix::operator=(Matrix&& other) noexcept {
    if (this != &other) {
        mElements = std::move(other.mElements);
        other.mElements.clear();
        mRows = std::exchange(other.mRows, 0U);
        mCols = std::exchange(other.mCols, 0U);
    }
    return *this;
}

Matrix::~Matrix() = default;

unsigned int Matrix::dimension() const {
    return static_cast<unsigned int>(mElements.size());
}

void Matrix::fill(double value) {
    std::fill(mElements.begin(), mElements.end(), value);
}

double& Matrix::operator()(unsigned int row, unsigned int col) {
    return mElements[indexOf(row, col)];
}

double Matrix::operator()(unsigned int row, unsigned int col) const {
    return mElements[indexOf(row, col)];
}

std::size_t Matrix::indexOf(unsigned int row, unsigned int col) const {
    if (row >= mRows || col >= mCols)
        throw std::out_of_range("no element (" + std::to_string(row) + ", " + std::to_string(col) + ") in a " +
                                std::to_string(mRows) + "x" + std::to_string(mCols) + " matrix");
    return std::size_t{row} * mCols + col;
}

std::ostream& operator<<(std::ostream& stream, const Matrix& matrix) {
    if (matrix.dimension() == 0)
        return stream << "[]";
    if (matrix.cols() == 1)
        return stream << eigenMap(matrix).transpose().format(
                   {Eigen::StreamPrecision, Eigen::DontAlignCols, ", ", "\n", "[", "]"});
    return stream << eigenMap(matrix).format({Eigen::StreamPrecision, 0, ", ", "\n", "[", "]"});
}

}  // namespace tarvos::math
