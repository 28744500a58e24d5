#pragma once

#include "Vector.h"

#include <algorithm>
#include <array>
#include <type_traits>

namespace tarvos::math {

/// A vector of @p N doubles, N fixed at compile time: as small and as cheap to copy as its elements.
///
/// It converts to a Vector, so it can be printed or passed wherever a vector is read.
/// @ingroup math
template <unsigned int N>
class FixedVector {
public:
    /// N zeros.
    constexpr FixedVector() = default;
    /// The N elements in order, for instance `Vector2(x, y)`.
    template <typename... Values,
              typename = std::enable_if_t<sizeof...(Values) == N && (std::is_arithmetic_v<Values> && ...)>>
    constexpr explicit FixedVector(Values... values) : mElements{static_cast<double>(values)...} {}

    /// The number of elements.
    static constexpr unsigned int dimension() { return N; }
    /// Sets every element to @p value.
    void fill(double value) { mElements.fill(value); }

    /// Element @p i, counted from 0 and not checked.
    constexpr double& operator[](unsigned int i) { return mElements[i]; }
    /// The value of element @p i, not checked.
    constexpr double operator[](unsigned int i) const { return mElements[i]; }

    /// The N elements.
    double* data() noexcept { return mElements.data(); }
    /// The N elements, to be read only.
    const double* data() const noexcept { return mElements.data(); }

    /// The first element, for loops and algorithms.
    double* begin() noexcept { return data(); }
    /// Behind the last element.
    double* end() noexcept { return data() + N; }
    /// The first element, to be read only.
    const double* begin() const noexcept { return data(); }
    /// Behind the last element.
    const double* end() const noexcept { return data() + N; }

    /// An independent Vector of the same elements.
    operator Vector() const {
        Vector vector(N);
        std::copy(mElements.begin(), mElements.end(), vector.data());
        return vector;
    }

private:
    std::array<double, N> mElements{};
};

}  // namespace tarvos::math
