#pragma once

#include <opencv2/core.hpp>
#include <tarvos/core/Export.h>
#include <tarvos/core/cvdata/features/ColorGMM.h>

namespace tarvos::vision {

/// @file
/// Gaussian mixtures over colours: evaluate one, mark skin, learn one from samples, as the guide "Colours of your own"
/// does.
///
/// @snippet vision.cpp mixture

/// The probability density of each of the @p pixels under @p mixture (CV_32FC1, of their size). The pixels may have any
/// depth; of their channels the first are used, as many as the components have dimensions. The components' mean,
/// inverse covariance, determinant and weight are used as they are stored. 0 for a mixture without components. Aborts
/// when the components differ in dimension, have dimension 0 or fields of other sizes, when a determinant is not above
/// 0, and when the pixels have fewer channels.
/// @ingroup vision
TARVOS_CORE_EXPORT cv::Mat density(const core::cvdata::ColorGMM& mixture, const cv::Mat& pixels);

/// A mask of the @p pixels (CV_8UC3, BGR) that have the colour of skin by ColorGMM::skin(): 255 where hue and
/// saturation lie within @p deviations standard deviations (of Mahalanobis distance) of a component, 0 elsewhere
/// (CV_8UC1, of their size). Aborts for pixels of another type and for a number of deviations that is negative or not a
/// number.
/// @ingroup vision
TARVOS_CORE_EXPORT cv::Mat skinMask(const cv::Mat& pixels, double deviations = 3.0);

/// Learns a mixture of @p components with full covariances by expectation maximisation (`cv::ml::EM`). Each row of
/// @p samples is one sample: the values of a colour, 1 to 4 columns of any depth. All fields of all components are
/// filled. The same samples give the same mixture.
///
/// Throws `std::runtime_error` when there are fewer samples than components, when one is not finite, when the samples,
/// or those of a component, have a singular covariance (all alike, or on a line), or when they are too large or too
/// small for single precision. Aborts for a matrix of another shape and for fewer components than 1.
/// @ingroup vision
TARVOS_CORE_EXPORT core::cvdata::ColorGMM fitMixture(const cv::Mat& samples, int components);

}  // namespace tarvos::vision
