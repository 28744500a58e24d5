#include <Eigen/LU>
#include <tarvos/math/EigenMap.h>
#include <tarvos/math/SquareMatrix.h>

#include <cmath>
#include <stdexcept>
#include <string>

namespace tarvos::math {

namespace {

/// Scales @p elements, a row or a column, by a power of two. Returns the exponent by which they were divided.
template <typename Elements>
int scaleToOne(Elements elements) {
    int exponent = 0;
    std::frexp(elements.cwiseAbs().maxCoeff(), &exponent);
    elements = elements.unaryExpr([=](double element) { return std::ldexp(element, -exponent); });
    return exponent;
}

}  // namespace

SquareMatrix SquareMatrix::invert(const Matrix::InversionMethod& method) const {
    if (method != INVERSION_LU)
        throw std::invalid_argument("no matrix inversion method " + std::to_string(static_cast<int>(method)));
    const auto size = [this] { return std::to_string(rows()) + "x" + std::to_string(cols()); };
    if (rows() != cols())
        throw std::domain_error("a " + size() + " matrix has no inverse");
    SquareMatrix inverse(rows());
    if (rows() == 0)
        return inverse;
    // Rows and columns in units of their own are scaled by powers of two, which is exact: each row's largest element,
    // then each column's, comes to lie between 0.5 and 1.
    EigenMatrix scaled = eigenMap(*this);
    Eigen::VectorXi rowExponents(scaled.rows()), colExponents(scaled.cols());
    for (Eigen::Index i = 0; i < scaled.rows(); ++i)
        rowExponents[i] = scaleToOne(scaled.row(i));
    for (Eigen::Index i = 0; i < scaled.cols(); ++i)
        colExponents[i] = scaleToOne(scaled.col(i));
    const Eigen::FullPivLU<EigenMatrix> decomposition(scaled);
    if (decomposition.isInvertible())
        eigenMap(inverse) = decomposition.inverse();
    for (unsigned int row = 0; row < rows(); ++row)
        for (unsigned int col = 0; col < cols(); ++col)
            inverse(row, col) = std::ldexp(inverse(row, col), -colExponents[row] - rowExponents[col]);
    if (!decomposition.isInvertible() || !eigenMap(inverse).allFinite())
        throw std::domain_error("cannot invert a singular " + size() + " matrix");
    return inverse;
}

}  // namespace tarvos::math
