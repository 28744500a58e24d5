#pragma once

#include "math/FixedVector.h"

namespace tarvos::math {

using Vector4 = FixedVector<4>;

}  // namespace tarvos::math
