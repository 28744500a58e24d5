#include <Eigen/Eigenvalues>
#include <opencv2/imgproc.hpp>
#include <opencv2/ml.hpp>
#include <tarvos/core/Contract.h>
#include <tarvos/math/EigenMap.h>
#include <tarvos/vision/Mixture.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

namespace tarvos::vision {

namespace {

using core::cvdata::ColorGMM;
using core::cvdata::GM;
using math::eigenMap;
using math::EigenMatrix;

constexpr int HUES = 180;
constexpr int LEVELS = 256;
/// Rows that a thread converts at a time, so that they are still in the cache when they are marked.
constexpr int STRIP = 16;
/// A covariance whose eigenvalues have a smaller ratio is singular but for rounding.
constexpr double MIN_EIGENVALUE = 1e-12;

/// The squared Mahalanobis distances of @p values, a row each, from the mean of @p component.
template <typename Values>
Eigen::ArrayXd squaredDistances(const GM& component, const Values& values) {
    const EigenMatrix centred = values.rowwise() - eigenMap(component.mMean).col(0).transpose();
    return (centred * eigenMap(component.mCovarianceInverse)).cwiseProduct(centred).rowwise().sum();
}

/// 255 at [hue][saturation] for the colours of skin.
cv::Mat skinColours(double deviations) {
    EigenMatrix colours(HUES * LEVELS, 2);
    for (int hue = 0; hue < HUES; ++hue)
        for (int saturation = 0; saturation < LEVELS; ++saturation)
            colours.row(hue * LEVELS + saturation) << hue, saturation;
    cv::Mat marked = cv::Mat::zeros(HUES, LEVELS, CV_8UC1);
    const ColorGMM skin = ColorGMM::skin();
    for (const auto& component : skin.mMixtures) {
        const Eigen::ArrayXd distances = squaredDistances(*component, colours);
        for (int i = 0; i < HUES * LEVELS; ++i)
            if (distances[i] <= deviations * deviations)
                marked.ptr()[i] = 255;
    }
    return marked;
}

/// While one lives, the thread's random numbers begin anew.
struct OwnRandomNumbers {
    const cv::RNG callers = cv::theRNG();
    OwnRandomNumbers() { cv::theRNG() = cv::RNG(); }
    ~OwnRandomNumbers() { cv::theRNG() = callers; }
};

/// A model of @p samples, always the same.
cv::Ptr<cv::ml::EM> trained(const cv::Mat& samples, int components) {
    const cv::Ptr<cv::ml::EM> model = cv::ml::EM::create();
    model->setClustersNumber(components);
    model->setCovarianceMatrixType(cv::ml::EM::COV_MAT_GENERIC);
    const OwnRandomNumbers own;
    try {
        if (model->trainEM(samples))
            return model;
    } catch (const cv::Exception& error) {  // of samples whose squares a float does not hold, say
        if (error.code == cv::Error::StsNoMem)
            throw;
    }
    throw std::runtime_error("fitMixture: OpenCV finds no mixture of these samples");
}

}  // namespace

cv::Mat density(const ColorGMM& mixture, const cv::Mat& pixels) {
    cv::Mat densities = cv::Mat::zeros(pixels.size(), CV_32FC1);
    const auto dim = mixture.dimension() > 0 && mixture.mMixtures[0] != nullptr ? mixture.mMixtures[0]->mDim : 0;
    for (const auto& component : mixture.mMixtures)
        TARVOS_REQUIRE((component != NULL && dim > 0 && component->mDim == dim && component->mMean.dimension() == dim &&
                        component->mCovarianceInverse.rows() == dim && component->mCovarianceInverse.cols() == dim &&
                        component->mDeterminant > 0.0F) &&
                       "Mixture: a component is empty, differs in dimension, or has no determinant above 0.");
    TARVOS_REQUIRE((pixels.empty() || pixels.channels() >= static_cast<int>(dim)) &&
                   "Mixture: the pixels have too few channels.");
    cv::parallel_for_(cv::Range(0, pixels.rows), [&](const cv::Range& rows) {
        cv::Mat converted;
        for (int y = rows.start; y < rows.end; ++y) {
            pixels.row(y).convertTo(converted, CV_64F);
            const Eigen::Map<const EigenMatrix> values(converted.ptr<double>(), converted.cols, converted.channels());
            Eigen::Map<Eigen::ArrayXf> row(densities.ptr<float>(y), densities.cols);
            for (const auto& component : mixture.mMixtures) {
                const double scale = component->mWeight / std::sqrt(std::pow(2 * CV_PI, dim) * component->mDeterminant);
                row += (scale * (-0.5 * squaredDistances(*component, values.leftCols(dim))).exp()).cast<float>();
            }
        }
    });
    return densities;
}

cv::Mat skinMask(const cv::Mat& pixels, double deviations) {
    TARVOS_REQUIRE((pixels.type() == CV_8UC3 || pixels.empty()) && "Mixture: the pixels are not CV_8UC3.");
    TARVOS_REQUIRE((deviations >= 0.0) && "Mixture: the number of deviations is negative or not a number.");
    static const cv::Mat DEFAULT_COLOURS = skinColours(3.0);
    const cv::Mat colours = deviations == 3.0 ? DEFAULT_COLOURS : skinColours(deviations);
    cv::Mat mask(pixels.size(), CV_8UC1);
    const auto mark = [&](const cv::Range& rows) {
        cv::Mat hsv;
        cv::cvtColor(pixels.rowRange(rows), hsv, cv::COLOR_RGB2HSV);  // as the model has it: see ColorGMM::skin()
        for (int y = 0; y < hsv.rows; ++y)
            for (int x = 0; x < hsv.cols; ++x) {
                const unsigned char* colour = hsv.ptr(y, x);
                mask.ptr(rows.start + y)[x] = colours.ptr()[colour[0] * LEVELS + colour[1]];
            }
    };
    cv::parallel_for_(cv::Range(0, pixels.rows), mark, pixels.rows / static_cast<double>(STRIP));
    return mask;
}

ColorGMM fitMixture(const cv::Mat& samples, int components) {
    TARVOS_REQUIRE(
        (samples.dims <= 2 && samples.channels() == 1 && samples.cols >= 1 && samples.cols <= 4 && components >= 1) &&
        "fitMixture: a sample is a row of 1 to 4 values, a mixture at least 1 component.");
    cv::Mat values;
    samples.convertTo(values, CV_64F);
    if (values.rows < components)
        throw std::runtime_error("fitMixture: there are fewer samples than components");
    if (!cv::checkRange(values))
        throw std::runtime_error("fitMixture: a sample is not finite");
    const cv::Ptr<cv::ml::EM> model = trained(values, components);
    std::vector<cv::Mat> covariances;
    model->getCovs(covariances);
    ColorGMM mixture(static_cast<std::size_t>(components), static_cast<std::size_t>(values.cols));
    for (int i = 0; i < components; ++i) {
        GM& component = *mixture.mMixtures[static_cast<std::size_t>(i)];
        std::copy_n(covariances[static_cast<std::size_t>(i)].ptr<double>(), values.cols * values.cols,
                    component.mCovariance.begin());
        const auto covariance = eigenMap(component.mCovariance);
        const Eigen::VectorXd eigenvalues = Eigen::SelfAdjointEigenSolver<EigenMatrix>(covariance).eigenvalues();
        if (!(eigenvalues.minCoeff() > MIN_EIGENVALUE * eigenvalues.maxCoeff()))
            throw std::runtime_error("fitMixture: the samples of a component span no volume");
        component.mCovarianceInverse = component.mCovariance.invert(math::Matrix::INVERSION_LU);
        component.mDeterminant = static_cast<float>(covariance.determinant());
        if (!(component.mDeterminant > 0.0F && std::isfinite(component.mDeterminant)))
            throw std::runtime_error("fitMixture: a component's determinant is beyond a float: scale the samples");
        std::copy_n(model->getMeans().ptr<double>(i), values.cols, component.mMean.begin());
        component.mWeight = static_cast<float>(model->getWeights().at<double>(i));
    }
    return mixture;
}

}  // namespace tarvos::vision
