#include "core/cvdata/features/ColourHist2d.h"
#include "support/ContractDeath.h"
#include "support/Poses.h"

#include <array>

using namespace tarvos::core::cvdata;
using tarvos::math::Vector;

namespace {

class Histogram : public ColourHist2d {
public:
    using ColourHist2d::ColourHist2d;
    using ColourHist2d::operator=;
    unsigned int planeBins() const { return mPlaneBins; }
};

void expectShape(const Histogram& histogram, std::array<unsigned char, 3> bins) {
    std::array<unsigned char, 3> actual{};
    histogram.getBins(&actual[0], &actual[1], &actual[2]);
    EXPECT_EQ(actual, bins);
    EXPECT_EQ(histogram.planeBins(), static_cast<unsigned int>(bins[0] * bins[1]));
    EXPECT_EQ(histogram.getBinsTotal(), static_cast<unsigned int>(bins[0] * bins[1] * bins[2]));
    EXPECT_EQ(histogram.data().dimension(), histogram.getBinsTotal());
}

TEST(ColourHist2dTest, ShapeAndStorageAgree) {
    expectShape(Histogram(8, 8, 4), {8, 8, 4});
    expectShape(Histogram(255, 255, 255), {255, 255, 255});
    expectShape(Histogram(0, 5, 5), {0, 5, 5});
    expectShape(Histogram(0, 0, 0), {0, 0, 0});
    EXPECT_EQ(Histogram(1, 1, 1).type(), 0x40000016);
    unsigned char bins2 = 0;
    Histogram(8, 7, 4).getBins(nullptr, &bins2, nullptr);
    EXPECT_EQ(bins2, 7);
}

TEST(ColourHist2dTest, NewShapesDropTheEntries) {
    Histogram histogram(2, 1, 2);
    histogram.setData(vectorOf({1, 2, 3, 4}));
    const Vector* data = &histogram.data();
    histogram.setBins(2, 1, 2);
    EXPECT_EQ(&histogram.data(), data);
    EXPECT_EQ(elementsOf(*data), (std::vector<double>{1, 2, 3, 4}));
    histogram.setBins(1, 2, 2);
    expectShape(histogram, {1, 2, 2});
    EXPECT_EQ(elementsOf(histogram.data()), std::vector<double>(4));
    histogram.setBins(3, 1, 1);
    expectShape(histogram, {3, 1, 1});
}

TEST(ColourHist2dTest, DataIsCopied) {
    Histogram histogram(2, 1, 1);
    Vector input = vectorOf({5, 6});
    histogram.setData(input);
    input[0] = 0;
    EXPECT_EQ(histogram.data()[0], 5);
    EXPECT_CONTRACT(histogram.setData(Vector(3)), "core/cvdata/features/ColourHist2d.cpp",
                    "void tarvos::core::cvdata::ColourHist2d::setData(const tarvos::math::Vector&)",
                    "Input.dimension() == static_cast<std::size_t>(mBins1 * mBins2 * mBins3)");
}

TEST(ColourHist2dTest, CopiesAreDeep) {
    Histogram source(4, 4, 4);
    source.data().fill(3.0);
    source.mFlag = true;
    Histogram assigned(8, 8, 8);
    assigned = source;
    const Histogram& alias = assigned;
    assigned = alias;
    Histogram copy(source);
    for (Histogram* histogram : {&assigned, &copy}) {
        expectShape(*histogram, {4, 4, 4});
        EXPECT_EQ(elementsOf(histogram->data()), std::vector<double>(64, 3.0));
        EXPECT_FALSE(histogram->mFlag);
        histogram->clear();
        expectShape(*histogram, {4, 4, 4});
        EXPECT_EQ(elementsOf(histogram->data()), std::vector<double>(64, 0.0));
    }
    EXPECT_EQ(source.data()[0], 3.0);
}

}  // namespace
