#include <tarvos/core/Contract.h>
#include <tarvos/core/cvdata/features/ColourHist2d.h>

namespace tarvos::core::cvdata {

ColourHist2d::ColourHist2d(std::int64_t bins1, std::int64_t bins2, std::int64_t bins3)
    : VisualFeatures(REPR_COLOUR_HIST_2D) {
    ColourHist2d::setBins(binCount(bins1), binCount(bins2), binCount(bins3));
}

ColourHist2d::ColourHist2d(const ColourHist2d& other) : VisualFeatures(REPR_COLOUR_HIST_2D) {
    ColourHist2d::operator=(other);
}

ColourHist2d& ColourHist2d::operator=(const ColourHist2d& other) {
    if (this == &other)
        return *this;
    if (mColourHistData == nullptr)
        mColourHistData = std::make_unique<math::Vector>(other.data());
    else
        data() = other.data();
    other.getBins(&mBins1, &mBins2, &mBins3);
    mPlaneBins = std::uint32_t{mBins1} * mBins2;
    return *this;
}

void ColourHist2d::getBins(unsigned char* bins1, unsigned char* bins2, unsigned char* bins3) const {
    if (bins1 != nullptr)
        *bins1 = mBins1;
    if (bins2 != nullptr)
        *bins2 = mBins2;
    if (bins3 != nullptr)
        *bins3 = mBins3;
}

void ColourHist2d::setBins(unsigned char bins1, unsigned char bins2, unsigned char bins3) {
    if (mColourHistData != nullptr && bins1 == mBins1 && bins2 == mBins2 && bins3 == mBins3)
        return;
    mColourHistData = std::make_unique<math::Vector>(std::uint32_t{bins1} * bins2 * bins3);
    mBins1 = bins1;
    mBins2 = bins2;
    mBins3 = bins3;
    mPlaneBins = std::uint32_t{bins1} * bins2;
}

unsigned char ColourHist2d::binCount(std::int64_t bins) {
    TARVOS_REQUIRE_WITH("(not " + std::to_string(bins) + ")",
                        (bins >= 0 && bins <= 255) && "ColourHist2d: a channel has 0 to 255 bins.");
    return static_cast<unsigned char>(bins);
}

void ColourHist2d::setData(const math::Vector& Input) {
    TARVOS_REQUIRE(Input.dimension() == static_cast<std::size_t>(mBins1 * mBins2 * mBins3));
    data() = Input;
}

math::Vector& ColourHist2d::data() const {
    TARVOS_REQUIRE(mColourHistData != NULL);
    return *mColourHistData;
}

}  // namespace tarvos::core::cvdata
