#pragma once

#include <tarvos/math/FixedVector.h>

namespace tarvos::math {

/// A vector of 4 doubles.
/// @ingroup math
class Vector4 : public FixedVector<4> {
public:
    using FixedVector::FixedVector;
};

}  // namespace tarvos::math
