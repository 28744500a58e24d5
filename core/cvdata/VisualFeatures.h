#pragma once

#include <tarvos/core/cvdata/CvData.h>

namespace tarvos::core::cvdata {

/// The base of the feature containers.
/// @ingroup features
class TARVOS_CORE_EXPORT VisualFeatures : public CvData {
public:
    /// A feature with the tag @p type, its flag false.
    explicit VisualFeatures(DataReprType type) noexcept : CvData(type) {}
    /// Copies the tag and the flag. (The copies of the derived classes begin with a flag that is false.)
    VisualFeatures(const VisualFeatures& features) noexcept = default;

    /// Copies only mFlag; tags are not compared.
    virtual VisualFeatures& operator=(const VisualFeatures& features) {
        mFlag = features.mFlag;
        return *this;
    }

    /// Free for the application, for instance to mark a feature as valid in this frame. False in a new or copied
    /// feature; a move takes it over, and the assignments of the derived classes leave it unchanged.
    bool mFlag = false;

protected:
    using CvData::operator=;
};

}  // namespace tarvos::core::cvdata
