#pragma once

#include <boost/shared_ptr.hpp>
#include <tarvos/core/cvdata/VisualFeatures.h>
#include <tarvos/math/SquareMatrix.h>
#include <tarvos/math/Vector.h>

#include <cstddef>
#include <vector>

namespace tarvos::core::cvdata {

/// One component of a Gaussian mixture. The caller must set all fields; nothing keeps them consistent.
/// @ingroup features
class TARVOS_CORE_EXPORT GM {
public:
    /// A component of dimension @p dim: mean, covariance and inverse zero, weight 1, determinant 0.
    GM(unsigned int dim);
    /// A copy of all fields.
    GM(const GM& other) = default;
    /// Copies all fields. When it throws, this component is unchanged.
    GM& operator=(const GM& other) { return *this = GM(other); }
    /// Takes over all fields; the matrices of @p other become empty.
    GM& operator=(GM&& other) noexcept = default;
    virtual ~GM() = default;

    math::SquareMatrix mCovariance;         ///< mDim x mDim
    math::SquareMatrix mCovarianceInverse;  ///< mDim x mDim
    float mDeterminant = 0.0F;              ///< of the covariance
    unsigned int mDim;                      ///< dimension of the component
    math::Vector mMean;                     ///< mDim elements
    float mWeight = 1.0F;                   ///< share of this component in the mixture; they should sum to 1
};

/// A Gaussian mixture over a colour space of at most four dimensions. It holds the components and can load a model of
/// skin colour; `vision/Mixture.h` evaluates a mixture and learns one from samples.
///
/// Components are held through shared pointers, so that a user can keep one. Construction, copying and
/// initSkinDistribution() give every slot a component of its own and never overwrite one: a component that a user keeps
/// stays unchanged. Slots that remain keep their addresses unless the model outgrows its capacity.
///
/// @snippet features.cpp mixture
/// @ingroup features
class TARVOS_CORE_EXPORT ColorGMM : public VisualFeatures {
public:
    /// @p nMixtures components of dimension @p dim. Aborts when @p dim is above 4; throws
    /// `std::length_error` for more components than a vector can have (e.g. -1).
    ColorGMM(size_t nMixtures, size_t dim);
    /// A deep copy; its mFlag is false. Aborts if a slot of @p other is null.
    ColorGMM(const ColorGMM& other);
    /// Takes over the components, mEpsilon and mFlag of @p other, which then has no components.
    ColorGMM(ColorGMM&& other) noexcept = default;

    /// The number of components.
    virtual std::size_t dimension() const { return mMixtures.size(); }
    /// Copies the components deeply, and mEpsilon; mFlag stays. There is no move assignment. Aborts if a slot
    /// of @p other is null. When it throws, this model is unchanged.
    virtual ColorGMM& operator=(const ColorGMM& other);

    /// A model of skin colour: two components over hue and saturation. The channels are those of OpenCV's 8-bit HSV
    /// with red and blue exchanged (`cv::COLOR_RGB2HSV` applied to BGR pixels): skin lies near hue 111 to 117 of 180
    /// and saturation 112 to 115 of 255. Means, covariances, weights and determinants are a fitted model's constants in
    /// single precision; the inverse covariances are computed.
    static ColorGMM skin();
    /// Replaces the components by those of skin() and prints them to standard output in a single write, with the
    /// stream's precision. When it throws, this model is unchanged.
    void initSkinDistribution();

    std::vector<boost::shared_ptr<GM>> mMixtures;  ///< component 1 at index 0; no slot may be null
    /// A small positive constant, 5e-7F at first, for the model's users; `vision/Mixture.h` does not use it.
    double mEpsilon;

protected:
    using VisualFeatures::operator=;

private:
    void setComponents(std::vector<boost::shared_ptr<GM>> components);
};

}  // namespace tarvos::core::cvdata
