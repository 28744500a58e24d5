#pragma once

#include "FixedVector.h"

namespace tarvos::math {

using Vector4 = FixedVector<4>;

}  // namespace tarvos::math
