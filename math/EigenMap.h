#pragma once

#include <Eigen/Core>
#include <tarvos/math/Matrix.h>

namespace tarvos::math {

/// Eigen's type of a view of a Matrix: row by row, sized at run time.
/// @ingroup math
using EigenMatrix = Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor>;

/// A view of @p matrix (a Vector is one column) for Eigen's algorithms; no element is copied, and writes reach the
/// matrix. Valid until the matrix is assigned to, moved from or destroyed.
///
/// Include this header only where Eigen is used, as in the listing of Matrix: no other header needs it.
/// @ingroup math
inline Eigen::Map<EigenMatrix> eigenMap(Matrix& matrix) {
    return {matrix.data(), static_cast<Eigen::Index>(matrix.rows()), static_cast<Eigen::Index>(matrix.cols())};
}
/// A read-only view of @p matrix.
/// @ingroup math
inline Eigen::Map<const EigenMatrix> eigenMap(const Matrix& matrix) {
    return {matrix.data(), static_cast<Eigen::Index>(matrix.rows()), static_cast<Eigen::Index>(matrix.cols())};
}

}  // namespace tarvos::math
