#include "math/Matrix.h"

#include "math/EigenMap.h"

#include <cmath>
#include <limits>
#include <new>
#include <ostream>
#include <stdexcept>
#include <string>

namespace tarvos::math {

Matrix::Matrix(unsigned int rows, unsigned int cols) : mRows(rows), mCols(cols) {
    const std::size_t count = std::size_t{rows} * cols;
    if (count > std::numeric_limits<unsigned int>::max())
        throw std::bad_array_new_length();
    if (count > mInside.size())
        mOutside.resize(count);
}

void Matrix::fill(double value) {
    if (value == 0.0 && !std::signbit(value))
        eigenMap(*this).setZero();  // twice as fast in large histograms
    else
        eigenMap(*this).setConstant(value);
}

void Matrix::throwOutOfRange(unsigned int row, unsigned int col) const {
    throw std::out_of_range("no element (" + std::to_string(row) + ", " + std::to_string(col) + ") in a " +
                            std::to_string(mRows) + "x" + std::to_string(mCols) + " matrix");
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
