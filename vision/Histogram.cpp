#include <tarvos/core/Contract.h>
#include <tarvos/math/EigenMap.h>
#include <tarvos/vision/Histogram.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

namespace tarvos::vision {

namespace {

using core::cvdata::ColourHist2d;

std::array<unsigned char, 3> binsOf(const ColourHist2d& histogram) {
    std::array<unsigned char, 3> bins{};
    histogram.getBins(&bins[0], &bins[1], &bins[2]);
    TARVOS_REQUIRE((histogram.data().dimension() == histogram.getBinsTotal()) &&
                   "Histogram: the data does not have the histogram's shape.");
    return bins;
}

/// What the values of three channels contribute to the index of an entry.
class Indices {
public:
    Indices(const ColourHist2d& histogram, const cv::Mat& pixels, const ChannelLimits& limits) {
        TARVOS_REQUIRE((pixels.empty() || (pixels.type() == CV_8UC3 && pixels.dims == 2)) &&
                       "Histogram: the pixels are not CV_8UC3.");
        TARVOS_REQUIRE((*std::min_element(limits.begin(), limits.end()) > 0) && "Histogram: a limit is not above 0.");
        const auto bins = binsOf(histogram);
        const std::int32_t strides[] = {bins[1] * bins[2], bins[2], 1};
        for (std::size_t channel = 0; channel < 3; ++channel)
            for (std::int32_t value = 0; value < 256; ++value)
                mParts[channel][value] = value < limits[channel] && bins[channel] > 0
                                             ? value * bins[channel] / limits[channel] * strides[channel]
                                             : NOT_COUNTED;
    }

    /// The index for the colour at @p pixel, negative if it is not counted.
    std::int32_t operator()(const unsigned char* pixel) const {
        return mParts[0][pixel[0]] + mParts[1][pixel[1]] + mParts[2][pixel[2]];
    }

private:
    static constexpr std::int32_t NOT_COUNTED = -(1 << 28);  ///< below the negative of the largest index
    std::int32_t mParts[3][256];
};

}  // namespace

void addPixels(ColourHist2d& histogram, const cv::Mat& pixels, const cv::Mat& mask, const ChannelLimits& limits) {
    TARVOS_REQUIRE((mask.empty() || (mask.type() == CV_8UC1 && mask.size() == pixels.size())) &&
                   "Histogram: the mask is not CV_8UC1 and of the pixels' size.");
    const Indices indexOf(histogram, pixels, limits);
    // Neighbours often fall into the same entry: counted apart, one increment need not wait for the other.
    const std::size_t total = histogram.getBinsTotal();
    std::vector<std::uint32_t> counts(2 * total);
    for (int y = 0; y < pixels.rows; ++y) {
        const unsigned char* pixel = pixels.ptr(y);
        const unsigned char* marked = mask.empty() ? nullptr : mask.ptr(y);
        std::uint32_t* halves[] = {counts.data(), counts.data() + total};
        for (int x = 0; x < pixels.cols; ++x, pixel += 3) {
            const std::int32_t entry = indexOf(pixel);
            if (entry >= 0 && (marked == nullptr || marked[x] != 0))
                ++halves[x % 2][entry];
        }
    }
    double* entries = histogram.data().data();
    for (std::size_t i = 0; i < total; ++i)
        entries[i] += static_cast<double>(counts[i]) + counts[i + total];
}

void normalize(ColourHist2d& histogram) {
    binsOf(histogram);  // checks the shape
    auto entries = math::eigenMap(histogram.data()).array();
    const double sum = entries.sum();
    if (sum != 0.0)
        entries /= sum;
}

double bhattacharyyaDistance(const ColourHist2d& a, const ColourHist2d& b) {
    TARVOS_REQUIRE((binsOf(a) == binsOf(b)) && "Histogram: the histograms differ in shape.");
    const auto entriesA = math::eigenMap(a.data()).array(), entriesB = math::eigenMap(b.data()).array();
    if (entriesA.size() == 0)
        return 1.0;
    const double sumA = entriesA.sum(), sumB = entriesB.sum();
    TARVOS_REQUIRE((entriesA.minCoeff() >= 0.0 && entriesB.minCoeff() >= 0.0 && !std::isnan(sumA + sumB)) &&
                   "Histogram: an entry is negative or not a number.");
    if (std::min(sumA, sumB) < std::numeric_limits<double>::min())  // whose reciprocal may be infinite
        return 1.0;
    const double coefficient = (entriesA * (1.0 / sumA) * (entriesB * (1.0 / sumB))).sqrt().sum();
    return std::sqrt(std::max(1.0 - coefficient, 0.0));
}

cv::Mat backProject(const ColourHist2d& histogram, const cv::Mat& pixels, const ChannelLimits& limits) {
    const math::Vector& entries = histogram.data();
    const double largest = entries.dimension() > 0 ? *std::max_element(entries.begin(), entries.end()) : 0.0;
    std::vector<unsigned char> levels(entries.dimension());
    if (largest > 0.0)
        std::transform(entries.begin(), entries.end(), levels.begin(),
                       [=](double entry) { return cv::saturate_cast<unsigned char>(entry / largest * 255.0); });
    const Indices indexOf(histogram, pixels, limits);
    const unsigned char* levelOf = levels.data();
    cv::Mat projected(pixels.size(), CV_8UC1);
    for (int y = 0; y < pixels.rows; ++y) {
        const unsigned char* pixel = pixels.ptr(y);
        unsigned char* levelsOfRow = projected.ptr(y);
        for (int x = 0; x < pixels.cols; ++x, pixel += 3) {
            const std::int32_t entry = indexOf(pixel);
            levelsOfRow[x] = entry >= 0 ? levelOf[entry] : static_cast<unsigned char>(0);
        }
    }
    return projected;
}

}  // namespace tarvos::vision
