#pragma once

#include <tarvos/core/cvdata/VisualFeatures.h>
#include <tarvos/math/Vector.h>

#include <cstdint>
#include <memory>

namespace tarvos::core::cvdata {

/// A histogram over three colour channels with a number of bins for each: a flat vector of bins1 x bins2 x bins3
/// doubles, and its shape. (With one bin for a channel it is the two-dimensional one of the name.)
///
/// What colour an entry stands for is the application's choice; `vision/Histogram.h` fills it in the order of OpenCV's
/// histograms. A new histogram, and one whose shape was changed, is zero.
///
/// Class invariant: the vector has getBinsTotal() elements. Only an assignment to data() can break it. A histogram that
/// was moved from has no vector until it is assigned to or gets one by setBins().
///
/// @snippet features.cpp histogram
/// @ingroup features
class TARVOS_CORE_EXPORT ColourHist2d : public VisualFeatures {
public:
    /// A zero histogram of @p bins1 x @p bins2 x @p bins3 entries. Aborts when a number of bins is not in 0 to 255.
    ColourHist2d(std::int64_t bins1, std::int64_t bins2, std::int64_t bins3);
    /// A deep copy; its mFlag is false.
    ColourHist2d(const ColourHist2d& other);
    /// Takes over the entries of @p other, and has its shape and mFlag; @p other then has no vector.
    ColourHist2d(ColourHist2d&& other) noexcept = default;

    /// Copies shape and entries; mFlag stays. There is no move assignment. Aborts when @p other was moved from.
    virtual ColourHist2d& operator=(const ColourHist2d& other);
    /// The number of entries: bins1 x bins2 x bins3.
    virtual unsigned int getBinsTotal() const { return std::uint32_t{mBins1} * mBins2 * mBins3; }
    /// Writes the numbers of bins; null pointers are skipped.
    virtual void getBins(unsigned char* bins1, unsigned char* bins2, unsigned char* bins3) const;
    /// Changes the shape and sets every entry to zero; does nothing if that is the shape already. When it throws for
    /// lack of memory, the histogram is unchanged.
    virtual void setBins(unsigned char bins1, unsigned char bins2, unsigned char bins3);
    /// The same for numbers of other types, as literals are. Aborts when a number of bins is not in 0 to 255.
    template <typename Bins1, typename Bins2, typename Bins3>
    void setBins(Bins1 bins1, Bins2 bins2, Bins3 bins3) {
        setBins(binCount(static_cast<std::int64_t>(bins1)), binCount(static_cast<std::int64_t>(bins2)),
                binCount(static_cast<std::int64_t>(bins3)));
    }
    /// Sets every entry to zero.
    virtual void clear() { data().fill(0.0); }

    /// Copies @p Input, of getBinsTotal() elements; any other length aborts.
    void setData(const math::Vector& Input);
    /// The entries, writable also through a const histogram. Valid until setBins() changes the shape. Aborts
    /// when the histogram was moved from.
    math::Vector& data() const;

protected:
    using VisualFeatures::operator=;

    std::unique_ptr<math::Vector> mColourHistData;  ///< the entries; null once moved from
    unsigned char mBins1 = 0;                       ///< bins of channel 1
    unsigned char mBins2 = 0;                       ///< bins of channel 2
    unsigned char mBins3 = 0;                       ///< bins of channel 3
    std::uint32_t mPlaneBins = 0;                   ///< bins1 x bins2

private:
    static unsigned char binCount(std::int64_t bins);
};

}  // namespace tarvos::core::cvdata
