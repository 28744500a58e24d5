#include <tarvos/core/Contract.h>
#include <tarvos/core/cvdata/CvData.h>

namespace tarvos::core::cvdata {

CvData& CvData::operator=(const CvData& data) {
    TARVOS_REQUIRE(this->mDataReprType == data.mDataReprType);
    return *this;
}

}  // namespace tarvos::core::cvdata
