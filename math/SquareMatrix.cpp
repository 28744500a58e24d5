#include "math/SquareMatrix.h"

#include "math/EigenMap.h"

#include <Eigen/LU>

#include <limits>
#include <stdexcept>
#include <string>

namespace tarvos::math {

namespace {

/// Inverts @p matrix if its numbers allow. @p N, its size where that is small, lets Eigen work without the heap.
template <int N>
bool invertInto(Matrix& inverse, const Matrix& matrix) {
    using Fixed = Eigen::Matrix<double, N, N, Eigen::RowMajor>;
    const Eigen::Map<const Fixed> elements(matrix.data(), matrix.rows(), matrix.cols());
    Eigen::FullPivLU<Fixed> decomposition(matrix.rows(), matrix.cols());
    decomposition.setThreshold(std::numeric_limits<double>::epsilon() * matrix.rows());
    decomposition.compute(elements);
    if (!decomposition.isInvertible())
        return false;
    Eigen::Map<Fixed> result(inverse.data(), inverse.rows(), inverse.cols());
    result = decomposition.inverse();
    return result.allFinite();
}

bool invertInto(Matrix& inverse, const Matrix& matrix) {
    switch (matrix.rows()) {
        case 0:
            return true;
        case 1:
            return invertInto<1>(inverse, matrix);
        case 2:
            return invertInto<2>(inverse, matrix);
        case 3:
            return invertInto<3>(inverse, matrix);
        case 4:
            return invertInto<4>(inverse, matrix);
        default:
            return invertInto<Eigen::Dynamic>(inverse, matrix);
    }
}

}  // namespace

SquareMatrix SquareMatrix::invert(const Matrix::InversionMethod& method) const {
    if (method != INVERSION_LU)
        throw std::invalid_argument("no matrix inversion method " + std::to_string(static_cast<int>(method)));
    const auto size = [this] { return std::to_string(rows()) + "x" + std::to_string(cols()); };
    if (rows() != cols())
        throw std::domain_error("a " + size() + " matrix has no inverse");
    SquareMatrix inverse(rows());
    if (!invertInto(inverse, *this))
        throw std::domain_error("cannot invert a singular " + size() + " matrix");
    return inverse;
}

}  // namespace tarvos::math
