#include "math/Matrix.h"

#include "math/EigenMap.h"

#include <algorithm>
#include <limits>
#include <new>
#include <ostream>
#include <stdexcept>
#include <string>

namespace tarvos::math {

/// Makes storage for more elements than fit inside, all zero.
void Matrix::makeOutside() {
    if (count() > std::numeric_limits<unsigned int>::max())
        throw std::bad_array_new_length();
    mOutside = std::make_unique<double[]>(count());
}

void Matrix::fill(double value) {
    std::fill(begin(), end(), value);
}

/// Copies elements that lie outside into new storage.
void Matrix::copyOutside(const Matrix& other) {
    std::unique_ptr<double[]> copies(new double[other.count()]);
    std::copy(other.begin(), other.end(), copies.get());
    mOutside = std::move(copies);
}

/// Assigns where elements lie outside on at least one side. Storage of the same size is kept.
void Matrix::assignOutside(const Matrix& other) {
    if (mOutside != nullptr && count() == other.count()) {
        std::copy(other.begin(), other.end(), begin());
    } else if (other.mOutside != nullptr) {
        copyOutside(other);
    } else {
        mOutside.reset();
        std::memcpy(mInside, other.mInside, sizeof mInside);
    }
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
