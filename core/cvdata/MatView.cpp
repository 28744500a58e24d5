#include <tarvos/core/Contract.h>
#include <tarvos/core/cvdata/MatView.h>

#include <limits>
#include <new>

namespace tarvos::core::cvdata {

namespace {

cv::Mat viewOf(const Image& image) {
    if (image.empty() || image.iplImage() == nullptr)
        return {};
    IplImage whole = *image.iplImage();
    whole.roi = nullptr;
    return cv::cvarrToMat(&whole);
}

/// A copy whose rows are packed.
cv::Mat packed(const cv::Mat& pixels) try {
    return pixels.clone();
} catch (const cv::Exception&) {  // of a lack of memory
    throw std::bad_alloc();
}

}  // namespace

cv::Mat matView(Image& image) {
    cv::Mat view = viewOf(image);
    TARVOS_REQUIRE((view.empty() || view.step[0] % view.elemSize1() == 0) &&
                   "Image: OpenCV cannot compute on this stride; use matCopy(), or make the image by imageOf().");
    return view;
}

const cv::Mat matView(const Image& image) {
    return matView(const_cast<Image&>(image));
}

cv::Mat matCopy(const Image& image) {
    return packed(viewOf(image));
}

Image imageOf(const cv::Mat& pixels) {
    TARVOS_REQUIRE((pixels.depth() <= CV_64F) && "Image: This depth is not implemented!");  // OpenCV would pass it on
    TARVOS_REQUIRE((pixels.dims <= 2) && "imageOf: the matrix has more than 2 dimensions.");
    TARVOS_REQUIRE_WITH("(it has " + std::to_string(pixels.channels()) + ")",
                        (pixels.channels() == 1 || pixels.channels() == 3 || pixels.channels() == 4) &&
                            "imageOf: the matrix does not have 1, 3 or 4 channels.");
    if (pixels.empty())
        return {};
    if (pixels.total() > std::numeric_limits<int>::max() / pixels.elemSize())
        throw std::bad_array_new_length();
    const bool isPart = pixels.step[0] != pixels.elemSize() * static_cast<std::size_t>(pixels.cols);
    const cv::Mat own = isPart ? packed(pixels) : pixels;  // the ROI's row gap is parent data
    const IplImage header = cvIplImage(own);
    return {&header};
}

}  // namespace tarvos::core::cvdata
