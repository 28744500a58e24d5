#include "core/cvdata/features/ColorGMM.h"
#include "math/EigenMap.h"
#include "support/ContractDeath.h"

#include <sstream>

using namespace tarvos::core::cvdata;
using tarvos::math::eigenMap;

namespace {

TEST(ColorGmmTest, StartsWithFreshComponents) {
    EXPECT_EQ(ColorGMM(0, 3).dimension(), 0U);
    EXPECT_EQ(ColorGMM(0, 3).mEpsilon, 4.999999987376214e-7);
    for (const unsigned int dim : {0U, 2U, 4U}) {
        const ColorGMM model(3, dim);
        ASSERT_EQ(model.dimension(), 3U);
        const GM& component = *model.mMixtures[2];
        EXPECT_EQ(component.mDim, dim);
        EXPECT_EQ(component.mCovariance.dimension(), dim * dim);
        EXPECT_EQ(component.mCovarianceInverse.dimension(), dim * dim);
        EXPECT_EQ(eigenMap(component.mMean).cwiseAbs().sum(), 0);
        EXPECT_EQ(component.mWeight, 1.0F);
        EXPECT_EQ(component.mDeterminant, 0.0F);
    }
    EXPECT_CONTRACT(ColorGMM(2, 5), "core/cvdata/features/ColorGMM.cpp",
                    "tarvos::core::cvdata::ColorGMM::ColorGMM(size_t, size_t)", "dim <= 4");
}

TEST(ColorGmmTest, SkinModelIsLoadedAndPrinted) {
    ColorGMM model(3, 3);
    testing::internal::CaptureStdout();
    model.initSkinDistribution();
    const std::string printed = testing::internal::GetCapturedStdout();

    ASSERT_EQ(model.dimension(), 2U);
    std::ostringstream expected;
    for (const auto& component : model.mMixtures) {
        expected << "Values of mixture " << (component == model.mMixtures[0] ? 1 : 2)
                 << " set to:\nCovariance:\n"
                 << component->mCovariance << "\nCovariance Inverse:\n"
                 << component->mCovarianceInverse << "\nMean:\n"
                 << component->mMean << "\nWeight:\n"
                 << (component == model.mMixtures[0] ? "0.5027" : "0.4973") << "\nDeterminant:\n"
                 << (component == model.mMixtures[0] ? "281.14" : "309.34") << "\n"
                 << "***********************************\n";
    }
    EXPECT_EQ(printed, expected.str());

    const GM& first = *model.mMixtures[0];
    EXPECT_EQ(first.mDim, 2U);
    EXPECT_EQ(first.mCovariance(0, 0), 3.078900098800659);
    EXPECT_EQ(first.mCovariance(1, 0), -0.2718000113964081);
    EXPECT_EQ(first.mMean[1], static_cast<double>(114.8166F));
    EXPECT_NEAR(first.mCovarianceInverse(0, 0), 0.324877, 1e-6);
    EXPECT_NEAR(first.mCovarianceInverse(0, 1), 0.000967, 1e-6);
    EXPECT_NEAR(first.mCovarianceInverse(1, 1), 0.010958, 1e-6);
    const GM& second = *model.mMixtures[1];
    EXPECT_EQ(second.mCovariance(0, 1), static_cast<double>(-1.7907F));
    EXPECT_EQ(second.mCovariance(1, 1), static_cast<double>(2.2867F));
    EXPECT_EQ(second.mMean[0], static_cast<double>(116.5767F));
}

TEST(ColorGmmTest, CopiesAreDeep) {
    ColorGMM source(1, 2);
    source.mMixtures[0]->mMean[0] = 5.0;
    source.mMixtures[0]->mCovarianceInverse.fill(3.0);
    source.mMixtures[0]->mWeight = 0.25F;
    source.mEpsilon = 0.5;
    ColorGMM target(3, 4);
    const boost::shared_ptr<GM> kept = target.mMixtures[0];
    kept->mMean[0] = 1.0;
    target = source;
    const ColorGMM& alias = target;
    target = alias;
    const ColorGMM copy(target);
    for (const ColorGMM* model : {static_cast<const ColorGMM*>(&target), &copy}) {
        ASSERT_EQ(model->dimension(), 1U);
        EXPECT_NE(model->mMixtures[0], source.mMixtures[0]);
        EXPECT_EQ(model->mMixtures[0]->mMean[0], 5.0);
        EXPECT_EQ(model->mMixtures[0]->mCovarianceInverse(1, 1), 3.0);
        EXPECT_EQ(model->mMixtures[0]->mWeight, 0.25F);
        EXPECT_EQ(model->mEpsilon, 0.5);
    }
    EXPECT_EQ(kept->mMean[0], 1.0) << "a component that a user holds is never overwritten";
    copy.mMixtures[0]->mMean[0] = 9.0;
    EXPECT_EQ(target.mMixtures[0]->mMean[0], 5.0);

    source.mMixtures[0].reset();
    EXPECT_DEATH(target = source, "a slot of the mixture is empty");
}

}  // namespace
