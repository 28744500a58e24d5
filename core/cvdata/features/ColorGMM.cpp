#include <tarvos/core/Contract.h>
#include <tarvos/core/Report.h>
#include <tarvos/core/cvdata/features/ColorGMM.h>

#include <algorithm>
#include <iostream>
#include <iterator>
#include <sstream>
#include <utility>

namespace tarvos::core::cvdata {

namespace {

struct SkinComponent {
    float covariance[4];
    float mean[2];
    float weight;
    float determinant;
};

constexpr SkinComponent SKIN_COMPONENTS[] = {
    {{3.0789F, -0.2718F, -0.2718F, 91.2812F}, {111.3253F, 114.8166F}, 0.5027F, 281.14F},
    {{136.4821F, -1.7907F, -1.7907F, 2.2867F}, {116.5767F, 111.7613F}, 0.4973F, 309.34F},
};

}  // namespace

GM::GM(unsigned int dim) : mCovariance(dim), mCovarianceInverse(dim), mDim(dim), mMean(dim) {}

ColorGMM::ColorGMM(size_t nMixtures, size_t dim)
    : VisualFeatures(REPR_COLOR_GMM), mEpsilon(static_cast<double>(5e-7F)) {
    TARVOS_REQUIRE(dim <= 4);
    mMixtures.resize(nMixtures);
    for (auto& component : mMixtures)
        component.reset(new GM(static_cast<unsigned int>(dim)));
}

ColorGMM::ColorGMM(const ColorGMM& other) : VisualFeatures(other.type()), mEpsilon(other.mEpsilon) {
    mMixtures.reserve(other.mMixtures.size());
    for (const auto& component : other.mMixtures) {
        TARVOS_REQUIRE((component != NULL) && "ColorGMM: a slot of the mixture is empty.");
        mMixtures.emplace_back(new GM(*component));
    }
}

ColorGMM& ColorGMM::operator=(const ColorGMM& other) {
    if (this == &other)
        return *this;
    ColorGMM copy(other);
    setComponents(std::move(copy.mMixtures));
    mEpsilon = other.mEpsilon;
    return *this;
}

ColorGMM ColorGMM::skin() {
    ColorGMM model(std::size(SKIN_COMPONENTS), 2);
    for (std::size_t i = 0; i < model.dimension(); ++i) {
        const SkinComponent& skin = SKIN_COMPONENTS[i];
        GM& component = *model.mMixtures[i];
        std::copy(std::begin(skin.covariance), std::end(skin.covariance), component.mCovariance.begin());
        component.mCovarianceInverse = component.mCovariance.invert(math::Matrix::INVERSION_LU);
        std::copy(std::begin(skin.mean), std::end(skin.mean), component.mMean.begin());
        component.mWeight = skin.weight;
        component.mDeterminant = skin.determinant;
    }
    return model;
}

void ColorGMM::initSkinDistribution() {
    ColorGMM model = skin();
    std::ostringstream text;
    text.copyfmt(std::cout);
    text.width(0);
    text.exceptions(std::ios_base::badbit);  // for lack of memory
    for (std::size_t i = 0; i < model.dimension(); ++i) {
        const GM& component = *model.mMixtures[i];
        text << "Values of mixture " + std::to_string(i + 1) + " set to:\n"
             << "Covariance:\n"
             << component.mCovariance << "\nCovariance Inverse:\n"
             << component.mCovarianceInverse << "\nMean:\n"
             << component.mMean << "\nWeight:\n"
             << component.mWeight << "\nDeterminant:\n"
             << component.mDeterminant << '\n'
             << std::string(35, '*') << (i + 1 < model.dimension() ? "\n" : "");
    }
    report(std::cout, text.str());
    setComponents(std::move(model.mMixtures));
}

void ColorGMM::setComponents(std::vector<boost::shared_ptr<GM>> components) {
    mMixtures.resize(components.size());
    std::move(components.begin(), components.end(), mMixtures.begin());
}

}  // namespace tarvos::core::cvdata
