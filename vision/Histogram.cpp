#include <tarvos/core/Contract.h>
#include <tarvos/math/EigenMap.h>
#include <tarvos/vision/Histogram.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
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

/// Calls @p visit with the indices of each row's entries, negative for colours that are not counted, and the row's
/// number.
template <typename Visit>
void forEachRow(const ColourHist2d& histogram, const cv::Mat& pixels, const ChannelLimits& limits, Visit visit) {
    constexpr std::int32_t NOT_COUNTED = -(1 << 28);  // below the negative of the largest index
    TARVOS_REQUIRE((pixels.type() == CV_8UC3 || pixels.empty()) && "Histogram: the pixels are not CV_8UC3.");
    TARVOS_REQUIRE((*std::min_element(limits.begin(), limits.end()) > 0) && "Histogram: a limit is not above 0.");
    const auto bins = binsOf(histogram);
    const std::int32_t strides[] = {bins[1] * bins[2], bins[2], 1};
    std::int32_t parts[3][256];  // what a channel's value contributes to the index
    for (std::size_t i = 0; i < 3; ++i) {
        std::fill(std::begin(parts[i]), std::end(parts[i]), NOT_COUNTED);
        std::int64_t value = 0;
        for (std::int64_t bin = 0; bin < bins[i]; ++bin)
            for (; value < 256 && value * bins[i] < (bin + 1) * limits[i]; ++value)
                parts[i][value] = static_cast<std::int32_t>(bin) * strides[i];
    }
    std::vector<std::int32_t> entries(static_cast<std::size_t>(pixels.cols));
    for (int y = 0; y < pixels.rows; ++y) {
        const unsigned char* pixel = pixels.ptr(y);
        for (std::int32_t& entry : entries) {
            entry = parts[0][pixel[0]] + parts[1][pixel[1]] + parts[2][pixel[2]];
            pixel += 3;
        }
        visit(entries, y);
    }
}

}  // namespace

void addPixels(ColourHist2d& histogram, const cv::Mat& pixels, const cv::Mat& mask, const ChannelLimits& limits) {
    TARVOS_REQUIRE((mask.empty() || (mask.type() == CV_8UC1 && mask.size() == pixels.size())) &&
                   "Histogram: the mask is not CV_8UC1 and of the pixels' size.");
    // Neighbours have like colours: counted apart, they need not wait for each other.
    const std::size_t total = histogram.getBinsTotal();
    std::vector<std::uint32_t> counts(2 * total);
    std::uint32_t* const halves[] = {counts.data(), counts.data() + total};
    forEachRow(histogram, pixels, limits, [&](const std::vector<std::int32_t>& entries, int y) {
        const unsigned char* marked = mask.empty() ? nullptr : mask.ptr(y);
        std::size_t half = 0;
        for (const std::int32_t entry : entries) {
            if (entry >= 0 && (marked == nullptr || *marked != 0))
                ++halves[half][entry];
            half ^= 1;
            marked += marked != nullptr ? 1 : 0;
        }
    });
    for (std::size_t i = 0; i < total; ++i)
        histogram.data().data()[i] += static_cast<double>(counts[i]) + counts[i + total];
}

void normalize(ColourHist2d& histogram) {
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
    if (sumA == 0.0 || sumB == 0.0)
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
    cv::Mat projected(pixels.size(), CV_8UC1);
    forEachRow(histogram, pixels, limits, [&](const std::vector<std::int32_t>& indices, int y) {
        std::transform(indices.begin(), indices.end(), projected.ptr(y), [&](std::int32_t index) {
            return index >= 0 ? levels.data()[index] : static_cast<unsigned char>(0);
        });
    });
    return projected;
}

}  // namespace tarvos::vision
