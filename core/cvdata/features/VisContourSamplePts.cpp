#include "core/cvdata/features/VisContourSamplePts.h"

#include "core/Contract.h"

#include <utility>

namespace tarvos::core::cvdata {

VisContourSamplePts::VisContourSamplePts() : VisualFeatures(REPR_VIS_CONTOUR_SAMPLE_PTS) {}

VisContourSamplePts::VisContourSamplePts(VisContourSamplePts&& other) noexcept
    : VisualFeatures(other),
      mEdges(std::exchange(other.mEdges, {})),
      mPoints(std::exchange(other.mPoints, {})),
      mField(other.mField) {}

VisContourSamplePts::~VisContourSamplePts() = default;

VisContourSamplePts& VisContourSamplePts::operator=(const VisContourSamplePts& /*other*/) {
    TARVOS_REQUIRE(0 && "operator = not implemented");
    return *this;
}

void VisContourSamplePts::clear() {
    mEdges.clear();
}

}  // namespace tarvos::core::cvdata
