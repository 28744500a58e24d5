#pragma once

#include <tarvos/core/cvdata/CvData.h>

namespace tarvos::core::cvdata {

/// The base of the feature containers.
/// @ingroup features
class TARVOS_CORE_EXPORT VisualFeatures : public CvData {
public:
    /// A feature with the tag @p type, its flag false.
    explicit VisualFeatures(DataReprType type) noexcept : CvData(type) {}
    /// Copies the tag and the flag.
    VisualFeatures(const VisualFeatures& features) noexcept = default;

    /// Copies only mFlag; tags are not compared.
    virtual VisualFeatures& operator=(const VisualFeatures& features) {
        mFlag = features.mFlag;
        return *this;
    }

    /// Free for the application, for instance to mark a feature as valid in this frame. False in a new feature, a
    /// copied one included; the assignments of the derived classes leave it alone.
    bool mFlag = false;

protected:
    using CvData::operator=;
};

}  // namespace tarvos::core::cvdata
