// Includes headers of its own that have the names of the library's, and uses both.
#include "core/Contract.h"
#include "core/Exception.h"
#include "core/Export.h"
#include "core/cvdata/Image.h"  // the short form goes on working
#include "math/Matrix.h"
#include "math/Vector.h"

#include <tarvos/core/Exception.h>
#include <tarvos/core/cvdata/pose/VectorPose.h>
#include <tarvos/core/trackingdata/State.h>

static_assert(OWN_Contract + OWN_Exception + OWN_Export + OWN_Matrix + OWN_Vector == 5, "all of them are our own");

int main() {
    const tarvos::core::State state(tarvos::core::cvdata::VectorPose(2), 2);
    return state.stateDimension() == 4 && tarvos::core::cvdata::Image().empty() ? 0 : 1;
}
