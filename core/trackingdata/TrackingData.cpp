#include <tarvos/core/trackingdata/TrackingData.h>

namespace tarvos::core {

TrackingData::~TrackingData() = default;

TrackingData& TrackingData::operator=(const TrackingData& data) = default;

}  // namespace tarvos::core
