#pragma once

#include <tarvos/math/Vector.h>

#include <array>
#include <cstddef>
#include <type_traits>

namespace tarvos::math {

/// A vector of @p N doubles, N fixed at compile time: a `std::array`, zero unless its elements are given. It converts
/// to a Vector, so it can be printed or passed wherever a vector is read.
/// @ingroup math
template <std::size_t N>
class FixedVector : public std::array<double, N> {
public:
    /// N zeros.
    constexpr FixedVector() : std::array<double, N>{} {}
    /// The N elements in order, for instance `Vector2(x, y)`.
    template <typename... Values,
              typename = std::enable_if_t<sizeof...(Values) == N && (std::is_arithmetic_v<Values> && ...)>>
    constexpr explicit FixedVector(Values... values) : std::array<double, N>{static_cast<double>(values)...} {}

    /// The number of elements.
    static constexpr unsigned int dimension() { return N; }

    /// An independent Vector of the same elements.
    operator Vector() const { return Vector::of(this->data(), N); }
};

}  // namespace tarvos::math
