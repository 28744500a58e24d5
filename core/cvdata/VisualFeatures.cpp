#include <tarvos/core/cvdata/VisualFeatures.h>

namespace tarvos::core::cvdata {

VisualFeatures::~VisualFeatures() = default;

VisualFeatures& VisualFeatures::operator=(const VisualFeatures& features) {
    mFlag = features.mFlag;
    return *this;
}

}  // namespace tarvos::core::cvdata
