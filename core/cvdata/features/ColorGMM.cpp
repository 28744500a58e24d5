#include "core/cvdata/features/ColorGMM.h"

#include "core/Contract.h"

#include <iostream>

namespace tarvos::core::cvdata {

namespace {

using Components = std::vector<boost::shared_ptr<GM>>;

struct SkinComponent {
    float covariance[2][2];
    float mean[2];
    float weight;
    float determinant;
};

constexpr SkinComponent SKIN_COMPONENTS[] = {
    {{{3.0789F, -0.2718F}, {-0.2718F, 91.2812F}}, {111.3253F, 114.8166F}, 0.5027F, 281.14F},
    {{{136.4821F, -1.7907F}, {-1.7907F, 2.2867F}}, {116.5767F, 111.7613F}, 0.4973F, 309.34F},
};

Components deepCopy(const Components& components) {
    Components copies;
    copies.reserve(components.size());
    for (const auto& component : components) {
        TARVOS_REQUIRE((component != NULL) && "ColorGMM: a slot of the mixture is empty.");
        copies.emplace_back(new GM(*component));
    }
    return copies;
}

}  // namespace

GM::GM(unsigned int dim) : mCovariance(dim), mCovarianceInverse(dim), mDim(dim), mMean(dim) {}

GM::~GM() = default;

ColorGMM::ColorGMM(size_t nMixtures, size_t dim)
    : VisualFeatures(REPR_COLOR_GMM), mEpsilon(static_cast<double>(5e-7F)) {
    TARVOS_REQUIRE(dim <= 4);
    mMixtures.resize(nMixtures);
    for (auto& component : mMixtures)
        component.reset(new GM(static_cast<unsigned int>(dim)));
}

ColorGMM::ColorGMM(const ColorGMM& other)
    : VisualFeatures(other.type()), mMixtures(deepCopy(other.mMixtures)), mEpsilon(other.mEpsilon) {}

ColorGMM::~ColorGMM() = default;

std::size_t ColorGMM::dimension() const {
    return mMixtures.size();
}

ColorGMM& ColorGMM::operator=(const ColorGMM& other) {
    if (this == &other)
        return *this;
    mMixtures = deepCopy(other.mMixtures);
    mEpsilon = other.mEpsilon;
    return *this;
}

void ColorGMM::initSkinDistribution() {
    Components components;
    for (const SkinComponent& skin : SKIN_COMPONENTS) {
        components.emplace_back(new GM(2));
        GM& component = *components.back();

        std::cout << "Values of mixture " << components.size() << " set to:" << std::endl;
        std::cout << "Covariance:" << std::endl;
        for (unsigned int row = 0; row < 2; ++row)
            for (unsigned int col = 0; col < 2; ++col)
                component.mCovariance(row, col) = skin.covariance[row][col];
        std::cout << component.mCovariance << std::endl;

        std::cout << "Covariance Inverse:" << std::endl;
        component.mCovarianceInverse = component.mCovariance.invert(math::Matrix::INVERSION_LU);
        std::cout << component.mCovarianceInverse << std::endl;

        std::cout << "Mean:" << std::endl;
        for (unsigned int i = 0; i < 2; ++i)
            component.mMean[i] = skin.mean[i];
        std::cout << component.mMean << std::endl;

        std::cout << "Weight:" << std::endl;
        component.mWeight = skin.weight;
        std::cout << component.mWeight << std::endl;

        std::cout << "Determinant:" << std::endl;
        component.mDeterminant = skin.determinant;
        std::cout << component.mDeterminant << std::endl;

        std::cout << "***********************************" << std::endl;
    }
    mMixtures = std::move(components);
}

}  // namespace tarvos::core::cvdata
