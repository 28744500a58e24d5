#pragma once

#include <tarvos/math/FixedVector.h>

namespace tarvos::math {

/// A vector of 2 doubles.
/// @ingroup math
class Vector2 : public FixedVector<2> {
public:
    using FixedVector::FixedVector;
};

}  // namespace tarvos::math
