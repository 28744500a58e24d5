#pragma once

#include "../../../math/SquareMatrix.h"
#include "../../../math/Vector.h"
#include "../VisualFeatures.h"

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <vector>

namespace tarvos::core::cvdata {

/// One component of a Gaussian mixture. Nothing keeps its fields in step: whoever fills it sets them all.
/// @ingroup features
class TARVOS_CORE_EXPORT GM {
public:
    /// A component of dimension @p dim: mean, covariance and inverse zero, weight 1, determinant 0.
    explicit GM(unsigned int dim);
    /// An independent copy of all fields.
    GM(const GM& other) = default;
    /// Copies all fields.
    GM& operator=(const GM& other) = default;
    virtual ~GM();

    math::SquareMatrix mCovariance;         ///< mDim x mDim
    math::SquareMatrix mCovarianceInverse;  ///< mDim x mDim
    float mDeterminant = 0.0F;              ///< of the covariance
    unsigned int mDim;                      ///< dimension of the component
    math::Vector mMean;                     ///< mDim elements
    float mWeight = 1.0F;  ///< share of this component in the mixture; the weights of a mixture sum to 1
};

/// A Gaussian mixture over a colour space of at most four dimensions. It holds the components and can load a model of
/// skin colour; evaluating the mixture is the tracker's business.
///
/// Components are held through shared pointers, so that a user can keep one. Construction, copying and
/// initSkinDistribution() give every slot a component of its own and never overwrite one: a component kept from
/// before stays as it was.
///
/// @snippet features.cpp mixture
/// @ingroup features
class TARVOS_CORE_EXPORT ColorGMM : public VisualFeatures {
public:
    /// @p nMixtures components of dimension @p dim. Stops the process when @p dim is above 4; throws
    /// `std::length_error` for more components than a vector can have (a negative number, say).
    ColorGMM(size_t nMixtures, size_t dim);
    /// A deep copy; its mFlag is false. Stops the process when a user emptied a slot of @p other.
    ColorGMM(const ColorGMM& other);
    /// The model @p other was, its mFlag included; @p other has no components then.
    ColorGMM(ColorGMM&& other) noexcept;
    ~ColorGMM() override;

    /// The number of components.
    virtual std::size_t dimension() const;
    /// A deep copy of the components and of mEpsilon; mFlag stays. Stops the process when a user emptied a slot of @p
    /// other. When it throws, this model is as it was.
    virtual ColorGMM& operator=(const ColorGMM& other);
    /// Takes over the components and mEpsilon, unless @p other is this model; it has no components then. mFlag stays.
    ColorGMM& operator=(ColorGMM&& other) noexcept;

    /// Replaces the model by one of skin colour, two components over hue and saturation, and prints it to standard
    /// output in one piece, with the stream's precision. When it throws, this model is as it was. The channels are
    /// those of OpenCV's 8-bit HSV with red and blue exchanged (`cv::COLOR_RGB2HSV` applied to BGR pixels): skin lies
    /// near hue 111 to 117 of 180 and saturation 112 to 115 of 255. Values and determinants are the constants of that
    /// fitted model, in single precision.
    void initSkinDistribution();

    std::vector<boost::shared_ptr<GM>> mMixtures;  ///< component 1 at index 0; no slot may be empty
    /// A small positive constant for the model's users, for instance the density under which a colour is no match.
    double mEpsilon;

protected:
    using VisualFeatures::operator=;
};

}  // namespace tarvos::core::cvdata
