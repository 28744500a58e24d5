#include <tarvos/core/Contract.h>
#include <tarvos/core/cvdata/features/VisContourSamplePts.h>

namespace tarvos::core::cvdata {

VisContourSamplePts::VisContourSamplePts() : VisualFeatures(REPR_VIS_CONTOUR_SAMPLE_PTS) {}

VisContourSamplePts::VisContourSamplePts(VisContourSamplePts&& other) noexcept = default;

VisContourSamplePts& VisContourSamplePts::operator=(const VisContourSamplePts& /*other*/) {
    TARVOS_REQUIRE(0 && "operator = not implemented");
    return *this;
}

void VisContourSamplePts::clear() {
    mEdges.clear();
}

}  // namespace tarvos::core::cvdata
