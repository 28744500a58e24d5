#pragma once

#include "math/Matrix.h"

namespace tarvos::math {

/// A column vector of doubles. A new vector is zero; assignment takes the source's length.
/// @ingroup math
class TARVOS_MATH_EXPORT Vector : public Matrix {
public:
    /// A vector of no elements.
    Vector() noexcept = default;
    /// @p n zeros.
    explicit Vector(unsigned int n) : Matrix(n, 1) {}

    /// Element @p i, counted from 0 and not checked; writable also through a const vector.
    double& operator[](unsigned int i) const { return mElements.data()[i]; }
};

}  // namespace tarvos::math
