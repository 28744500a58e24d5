#pragma once

#include "FixedVector.h"

namespace tarvos::math {

using Vector2 = FixedVector<2>;

}  // namespace tarvos::math
