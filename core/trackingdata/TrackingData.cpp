#include "core/trackingdata/TrackingData.h"

namespace tarvos::core {

TrackingData::~TrackingData() = default;

TrackingData& TrackingData::operator=(const TrackingData& data) {
    mTimeStamp = data.mTimeStamp;
    return *this;
}

}  // namespace tarvos::core
