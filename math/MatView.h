#pragma once

#include <opencv2/core.hpp>
#include <tarvos/math/Matrix.h>

namespace tarvos::math {

/// A view of @p matrix (a Vector is one column) for OpenCV's C++ functions, of type CV_64FC1; no element is copied, and
/// writes reach the matrix. Valid until the matrix is assigned to, moved from or destroyed.
///
/// Include this header only where OpenCV is used: no other header of the math library needs it.
/// @ingroup math
inline cv::Mat matView(Matrix& matrix) {
    return {static_cast<int>(matrix.rows()), static_cast<int>(matrix.cols()), CV_64FC1, matrix.data()};
}
/// A read-only view of @p matrix. Copying the result drops constness.
/// @ingroup math
inline const cv::Mat matView(const Matrix& matrix) {
    return matView(const_cast<Matrix&>(matrix));
}
/// Deleted: the view would dangle.
cv::Mat matView(const Matrix&& matrix) = delete;

}  // namespace tarvos::math
