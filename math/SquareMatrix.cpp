#include "math/SquareMatrix.h"

#include "math/EigenMap.h"

#include <Eigen/LU>

#include <limits>
#include <stdexcept>
#include <string>

namespace tarvos::math {

SquareMatrix SquareMatrix::invert(const Matrix::InversionMethod& method) const {
    if (method != INVERSION_LU)
        throw std::invalid_argument("no matrix inversion method " + std::to_string(static_cast<int>(method)));
    const auto size = [this] { return std::to_string(rows()) + "x" + std::to_string(cols()); };
    if (rows() != cols())
        throw std::domain_error("a " + size() + " matrix has no inverse");
    SquareMatrix inverse(rows());
    if (rows() == 0)
        return inverse;
    Eigen::FullPivLU<EigenMatrix> decomposition(rows(), cols());
    decomposition.setThreshold(std::numeric_limits<double>::epsilon() * rows());
    decomposition.compute(eigenMap(*this));
    if (decomposition.isInvertible())
        eigenMap(inverse) = decomposition.inverse();
    if (!decomposition.isInvertible() || !eigenMap(inverse).allFinite())
        throw std::domain_error("cannot invert a singular " + size() + " matrix");
    return inverse;
}

}  // namespace tarvos::math
