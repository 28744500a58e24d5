#include <tarvos/core/cvdata/TimedData.h>

namespace tarvos::core::cvdata {

TimedData::~TimedData() = default;

}  // namespace tarvos::core::cvdata
