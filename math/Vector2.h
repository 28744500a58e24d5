#pragma once

#include "math/FixedVector.h"

namespace tarvos::math {

using Vector2 = FixedVector<2>;

}  // namespace tarvos::math
