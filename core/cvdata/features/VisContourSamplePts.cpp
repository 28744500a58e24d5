#include <tarvos/core/Contract.h>
#include <tarvos/core/cvdata/features/VisContourSamplePts.h>

namespace tarvos::core::cvdata {

VisContourSamplePts& VisContourSamplePts::operator=(const VisContourSamplePts& /*other*/) {
    TARVOS_REQUIRE(0 && "operator = not implemented");
    return *this;
}

}  // namespace tarvos::core::cvdata
