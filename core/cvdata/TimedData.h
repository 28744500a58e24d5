#pragma once

#include <tarvos/core/cvdata/CvData.h>

namespace tarvos::core::cvdata {

/// Vision data with a time stamp. The library gives the stamp no unit and no epoch and never sets it: the code that
/// produces the data does. Copies and assignments, whose tags must agree, copy the stamp; those of Image do not.
/// @ingroup images
class TARVOS_CORE_EXPORT TimedData : public CvData {
public:
    /// Starts at time stamp 0.
    explicit TimedData(DataReprType type) noexcept : CvData(type) {}

    /// Sets the time stamp, in whatever unit the application uses.
    void setTimeStamp(long timeStamp) noexcept { mTimeStamp = timeStamp; }
    /// The time stamp last set, 0 in new data.
    long getTimeStamp() const noexcept { return mTimeStamp; }

protected:
    // The root's assignment is for callers who hold a CvData&; here it would only hide a mistake.
    using CvData::operator=;

private:
    long mTimeStamp = 0;
};

}  // namespace tarvos::core::cvdata
