#include "core/cvdata/MatView.h"

#include "core/Contract.h"

namespace tarvos::core::cvdata {

cv::Mat matView(Image& image) {
    if (image.empty() || image.iplImage() == nullptr)
        return {};
    IplImage whole = *image.iplImage();
    whole.roi = nullptr;
    return cv::cvarrToMat(&whole);
}

const cv::Mat matView(const Image& image) {
    return matView(const_cast<Image&>(image));
}

Image imageOf(const cv::Mat& pixels) {
    TARVOS_REQUIRE((pixels.depth() <= CV_64F) && "Image: This depth is not implemented!");  // OpenCV would pass it on
    if (pixels.empty())
        return {};
    const bool isPart = pixels.step[0] != pixels.elemSize() * static_cast<std::size_t>(pixels.cols);
    const cv::Mat packed = isPart ? pixels.clone() : pixels;  // a part's padding is not its own
    const IplImage header = cvIplImage(packed);
    return {&header};
}

}  // namespace tarvos::core::cvdata
