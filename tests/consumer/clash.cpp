// A program whose own headers have the names of the library's, and that uses both.
#include "core/Contract.h"
#include "core/Exception.h"
#include "core/Export.h"
#include "core/cvdata/Image.h"  // the short form goes on working
#include "math/Matrix.h"
#include "math/Vector.h"

#include <tarvos/core/Exception.h>
#include <tarvos/core/cvdata/features/ColorGMM.h>
#include <tarvos/core/cvdata/pose/VectorPose.h>
#include <tarvos/core/trackingdata/State.h>

#include <iostream>

static_assert(OWN_Contract + OWN_Exception + OWN_Export + OWN_Matrix + OWN_Vector == 5, "all of them are our own");

int main() {
    const tarvos::core::State state(tarvos::core::cvdata::VectorPose(2), 2);
    std::cout << state.stateDimension() << " elements\n";
}
