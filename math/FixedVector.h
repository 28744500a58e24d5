#pragma once

#include "math/Vector.h"

#include <algorithm>
#include <array>
#include <type_traits>

namespace tarvos::math {

/// A vector of @p N doubles, N fixed at compile time: as small and as cheap to copy as its elements.
///
/// It converts to a Vector, so it can be printed or passed wherever a vector is read.
template <unsigned int N>
class FixedVector {
public:
    /// N zeros.
    constexpr FixedVector() = default;
    /// The N elements in order, for instance `Vector2(x, y)`.
    template <typename... Values,
              typename = std::enable_if_t<sizeof...(Values) == N && (std::is_arithmetic_v<Values> && ...)>>
    constexpr explicit FixedVector(Values... values) : mElements{static_cast<double>(values)...} {}

    static constexpr unsigned int dimension() { return N; }
    void fill(double value) { mElements.fill(value); }

    /// Element @p i, counted from 0 and not checked.
    constexpr double& operator[](unsigned int i) { return mElements[i]; }
    constexpr double operator[](unsigned int i) const { return mElements[i]; }

    double* data() noexcept { return mElements.data(); }
    const double* data() const noexcept { return mElements.data(); }

    operator Vector() const {
        Vector vector(N);
        std::copy(mElements.begin(), mElements.end(), vector.data());
        return vector;
    }

private:
    std::array<double, N> mElements{};
};

}  // namespace tarvos::math
