#pragma once

#include <tarvos/math/Matrix.h>

#include <algorithm>
#include <type_traits>

namespace tarvos::math {

/// A column vector of doubles. A new vector is zero; assignment takes the source's length. Arithmetic is Eigen's,
/// through EigenMap.h.
///
/// @snippet math.cpp vector
/// @ingroup math
class TARVOS_MATH_EXPORT Vector : public Matrix {
public:
    /// A vector of no elements.
    Vector() noexcept = default;
    /// @p n zeros.
    explicit Vector(unsigned int n) : Matrix(n, 1) {}
    /// The vector of the given elements, for instance `Vector::of(x, y)`.
    template <typename... Values, typename = std::enable_if_t<(std::is_arithmetic_v<Values> && ...)>>
    static Vector of(Values... values) {
        Vector vector(sizeof...(Values));
        double* element = vector.data();
        ((*element++ = static_cast<double>(values)), ...);
        return vector;
    }
    /// The @p n elements from @p first on, for instance a part of another vector.
    static Vector of(const double* first, unsigned int n) {
        Vector vector(n);
        std::copy_n(first, n, vector.data());
        return vector;
    }

    /// Element @p i, counted from 0 and not checked; writable also through a const vector.
    double& operator[](unsigned int i) const { return elements()[i]; }

    unsigned int dimension() const override { return rows() * cols(); }
};

}  // namespace tarvos::math
