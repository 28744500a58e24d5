#pragma once

#include <tarvos/core/Export.h>

namespace tarvos::core {

/// The root of time-stamped tracking data. The library gives the stamp no unit and no epoch.
/// @ingroup tracking
class TARVOS_CORE_EXPORT TrackingData {
public:
    /// Data of the time @p timeStamp.
    explicit TrackingData(double timeStamp) : mTimeStamp(timeStamp) {}
    /// Copies the time stamp.
    TrackingData(const TrackingData& data) = default;
    virtual ~TrackingData() = default;

    /// Copies the time stamp, nothing of a derived class.
    virtual TrackingData& operator=(const TrackingData& data) = default;
    /// A new copy, owned by the caller.
    virtual TrackingData* clone() const = 0;

    /// The time stamp, in the unit that the application gives it.
    double getTimeStamp() const { return mTimeStamp; }
    /// Sets the time stamp.
    void setTimeStamp(double timeStamp) { mTimeStamp = timeStamp; }

private:
    double mTimeStamp;
};

}  // namespace tarvos::core
