#include "core/cvdata/features/ColorGMM.h"
#include "support/Captured.h"
#include "support/ContractDeath.h"
#include "support/Poses.h"

#include <sstream>
#include <stdexcept>

using tarvos::core::cvdata::ColorGMM;

namespace {

TEST(ColorGmmTest, StartsWithFreshComponents) {
    EXPECT_EQ(ColorGMM(0, 3).mEpsilon, 4.999999987376214e-7);
    const ColorGMM model(3, 4);
    ASSERT_EQ(model.dimension(), 3U);
    EXPECT_EQ(model.mMixtures[2]->mDim, 4U);
    EXPECT_EQ(elementsOf(model.mMixtures[2]->mCovariance), std::vector<double>(16));
    EXPECT_EQ(elementsOf(model.mMixtures[2]->mMean), std::vector<double>(4));
    EXPECT_EQ(model.mMixtures[2]->mWeight, 1.0F);
    EXPECT_THROW(ColorGMM(static_cast<std::size_t>(-1), 4), std::length_error);
    EXPECT_CONTRACT(ColorGMM(2, 5), "core/cvdata/features/ColorGMM.cpp",
                    "tarvos::core::cvdata::ColorGMM::ColorGMM(size_t, size_t)", "dim <= 4");
}

TEST(ColorGmmTest, SkinModelIsLoadedAndPrinted) {
    const std::vector<double> covariances[] = {{3.0789F, -0.2718F, -0.2718F, 91.2812F},
                                               {136.4821F, -1.7907F, -1.7907F, 2.2867F}};
    const std::vector<double> means[] = {{111.3253F, 114.8166F}, {116.5767F, 111.7613F}};
    const std::string scalars[] = {"\nWeight:\n0.5027\nDeterminant:\n281.14\n",
                                   "\nWeight:\n0.4973\nDeterminant:\n309.34\n"};
    ColorGMM model(3, 3);
    const std::string printed = outputOf([&] { model.initSkinDistribution(); });
    ASSERT_EQ(model.dimension(), 2U);
    std::ostringstream expected;
    for (std::size_t i = 0; i < 2; ++i) {
        const auto& component = *model.mMixtures[i];
        EXPECT_EQ(component.mDim, 2U);
        EXPECT_EQ(elementsOf(component.mCovariance), covariances[i]);
        EXPECT_EQ(elementsOf(component.mMean), means[i]);
        expected << "Values of mixture " << i + 1 << " set to:\nCovariance:\n"
                 << component.mCovariance << "\nCovariance Inverse:\n"
                 << component.mCovarianceInverse << "\nMean:\n"
                 << component.mMean << scalars[i] << std::string(35, '*') << '\n';
    }
    EXPECT_EQ(printed, expected.str());
    EXPECT_NEAR(model.mMixtures[0]->mCovarianceInverse(0, 0), 0.324877, 1e-6);
}

class ColorGmmCopyTest : public testing::Test {
protected:
    ColorGmmCopyTest() {
        for (auto& component : source.mMixtures)
            component->mMean[0] = component->mCovariance(1, 0) = component->mCovarianceInverse(1, 1) = next += 1.0;
        source.mMixtures[1]->mDeterminant = source.mMixtures[1]->mWeight = 0.25F;
        source.mEpsilon = 0.5;
    }

    static std::vector<double> contentOf(const ColorGMM& model) {
        std::vector<double> content{model.mEpsilon};
        for (const auto& component : model.mMixtures)
            content.insert(content.end(),
                           {component->mMean[0], component->mCovariance(1, 0), component->mCovarianceInverse(1, 1),
                            component->mDeterminant, component->mWeight, 1.0 * component->mDim});
        return content;
    }

    double next = 4.0;
    ColorGMM source{2, 2};
};

TEST_F(ColorGmmCopyTest, IsDeepAndOverwritesNoComponentThatAUserHolds) {
    ColorGMM target(3, 4);
    const auto kept = target.mMixtures[0];
    target = source;
    target = static_cast<const ColorGMM&>(target);
    const ColorGMM copy(target);
    EXPECT_THAT(contentOf(target), testing::ElementsAre(0.5, 5, 5, 5, 0, 1, 2, 6, 6, 6, 0.25, 0.25, 2));
    EXPECT_EQ(contentOf(copy), contentOf(target));
    source.mMixtures[0]->mMean[0] = 9.0;
    EXPECT_EQ(target.mMixtures[0]->mMean[0], 5.0);
    EXPECT_EQ(copy.mMixtures[0]->mMean[0], 5.0);
    EXPECT_EQ(kept->mDim, 4U);
    source.mMixtures[0].reset();
    EXPECT_DEATH(target = source, "a slot of the mixture is empty");
}

}  // namespace
