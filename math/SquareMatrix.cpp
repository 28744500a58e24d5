#include "math/SquareMatrix.h"

#include "math/EigenMap.h"

#include <Eigen/LU>

#include <stdexcept>
#include <string>

namespace tarvos::math {

SquareMatrix SquareMatrix::invert(const Matrix::InversionMethod& method) const {
    if (method != INVERSION_LU)
        throw std::invalid_argument("no matrix inversion method " + std::to_string(static_cast<int>(method)));
    const std::string size = std::to_string(rows()) + "x" + std::to_string(cols());
    if (rows() != cols())
        throw std::domain_error("a " + size + " matrix has no inverse");

    SquareMatrix inverse(rows());
    if (rows() > 0) {
        const Eigen::FullPivLU<EigenMatrix> decomposition(eigenMap(*this));
        if (!decomposition.isInvertible())
            throw std::domain_error("cannot invert a singular " + size + " matrix");
        eigenMap(inverse) = decomposition.inverse();
    }
    return inverse;
}

}  // namespace tarvos::math
