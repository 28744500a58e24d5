#include "core/cvdata/features/ColorGMM.h"
#include "support/ContractDeath.h"
#include "support/Poses.h"

#include <sstream>

using tarvos::core::cvdata::ColorGMM;

namespace {

TEST(ColorGmmTest, StartsWithFreshComponents) {
    EXPECT_EQ(ColorGMM(0, 3).mEpsilon, 4.999999987376214e-7);
    for (const unsigned int dim : {0U, 4U}) {
        const ColorGMM model(3, dim);
        ASSERT_EQ(model.dimension(), 3U);
        EXPECT_EQ(model.mMixtures[2]->mDim, dim);
        EXPECT_EQ(model.mMixtures[2]->mCovariance.dimension(), dim * dim);
        EXPECT_EQ(model.mMixtures[2]->mWeight, 1.0F);
    }
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
    testing::internal::CaptureStdout();
    model.initSkinDistribution();
    const std::string printed = testing::internal::GetCapturedStdout();
    ASSERT_EQ(model.dimension(), 2U);
    std::ostringstream expected;
    for (std::size_t i = 0; i < 2; ++i) {
        const auto& component = *model.mMixtures[i];
        EXPECT_EQ(std::vector<double>(component.mCovariance.data(), component.mCovariance.data() + 4), covariances[i]);
        EXPECT_EQ(elementsOf(component.mMean), means[i]);
        expected << "Values of mixture " << i + 1 << " set to:\nCovariance:\n"
                 << component.mCovariance << "\nCovariance Inverse:\n"
                 << component.mCovarianceInverse << "\nMean:\n"
                 << component.mMean << scalars[i] << std::string(35, '*') << '\n';
    }
    EXPECT_EQ(printed, expected.str());
    const double inverse[] = {0.324877, 0.000967, 0.000967, 0.010958};
    for (unsigned int k = 0; k < 4; ++k)
        EXPECT_NEAR(model.mMixtures[0]->mCovarianceInverse.data()[k], inverse[k], 1e-6);
}

TEST(ColorGmmTest, CopiesAreDeep) {
    ColorGMM source(1, 2);
    source.mMixtures[0]->mMean[0] = 5.0;
    source.mMixtures[0]->mCovarianceInverse.fill(3.0);
    source.mEpsilon = 0.5;
    ColorGMM target(3, 4);
    const auto kept = target.mMixtures[0];
    target = source;
    target = static_cast<const ColorGMM&>(target);
    const ColorGMM copy(target);
    source.mMixtures[0]->mMean[0] = 9.0;
    for (const ColorGMM* model : {static_cast<const ColorGMM*>(&target), &copy}) {
        ASSERT_EQ(model->dimension(), 1U);
        EXPECT_EQ(model->mMixtures[0]->mMean[0], 5.0);
        EXPECT_EQ(model->mMixtures[0]->mCovarianceInverse(1, 1), 3.0);
        EXPECT_EQ(model->mEpsilon, 0.5);
    }
    EXPECT_EQ(kept->mDim, 4U) << "a component that a user holds is never overwritten";
    source.mMixtures[0].reset();
    EXPECT_DEATH(target = source, "a slot of the mixture is empty");
}

}  // namespace
