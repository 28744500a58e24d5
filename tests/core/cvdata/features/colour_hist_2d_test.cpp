#include "core/cvdata/features/ColourHist2d.h"
#include "support/ContractDeath.h"
#include "support/Poses.h"

#include <array>

using tarvos::core::cvdata::ColourHist2d;
using tarvos::math::Vector;

namespace {

void expectShape(const ColourHist2d& histogram, std::array<unsigned char, 3> bins) {
    std::array<unsigned char, 3> actual{};
    histogram.getBins(&actual[0], nullptr, &actual[2]);
    histogram.getBins(nullptr, &actual[1], nullptr);
    EXPECT_EQ(actual, bins);
    EXPECT_EQ(histogram.getBinsTotal(), static_cast<unsigned int>(bins[0] * bins[1] * bins[2]));
    EXPECT_EQ(histogram.data().dimension(), histogram.getBinsTotal());
}

TEST(ColourHist2dTest, ShapeAndStorageAgree) {
    expectShape(ColourHist2d(255, 255, 255), {255, 255, 255});
    ColourHist2d histogram(2, 1, 2);
    Vector input = Vector::of(1, 2, 3, 4);
    histogram.setData(input);
    input.fill(0);
    histogram.setBins(2, 1, 2);
    EXPECT_EQ(elementsOf(histogram.data()), (std::vector<double>{1, 2, 3, 4}));
    histogram.setBins(1, 2, 2);
    expectShape(histogram, {1, 2, 2});
    EXPECT_EQ(elementsOf(histogram.data()), std::vector<double>(4));
    EXPECT_CONTRACT(histogram.setData(Vector(2)), "core/cvdata/features/ColourHist2d.cpp",
                    "void tarvos::core::cvdata::ColourHist2d::setData(const tarvos::math::Vector&)",
                    "Input.dimension() == static_cast<std::size_t>(mBins1 * mBins2 * mBins3)");
}

TEST(ColourHist2dTest, CopiesAreDeep) {
    ColourHist2d source(4, 3, 2);
    source.data().fill(3.0);
    ColourHist2d assigned(8, 8, 8);
    assigned = source;
    assigned = static_cast<const ColourHist2d&>(assigned);
    const ColourHist2d copy(assigned);
    source.clear();
    EXPECT_EQ(elementsOf(source.data()), std::vector<double>(24, 0.0));
    expectShape(copy, {4, 3, 2});
    EXPECT_EQ(elementsOf(copy.data()), std::vector<double>(24, 3.0));
    EXPECT_EQ(elementsOf(assigned.data()), std::vector<double>(24, 3.0));
}

TEST(ColourHist2dTest, SaysThatItsVectorHasMoved) {
    ColourHist2d source(4, 3, 2);
    ColourHist2d moved(std::move(source));
    expectShape(moved, {4, 3, 2});
    EXPECT_EQ(source.getBinsTotal(), 0U);
    EXPECT_CONTRACT(source.data(), "core/cvdata/features/ColourHist2d.cpp",
                    "tarvos::math::Vector& tarvos::core::cvdata::ColourHist2d::data() const",
                    "mColourHistData != __null");
    EXPECT_DEATH(moved = source, "mColourHistData != __null");
    source.setBins(0, 0, 0);
    expectShape(source, {0, 0, 0});
    ColourHist2d gone(std::move(source));
    source = moved;
    expectShape(source, {4, 3, 2});
}

}  // namespace
