#include "core/cvdata/MatView.h"

#include "core/Contract.h"

namespace tarvos::core::cvdata {

cv::Mat matView(Image& image) {
    if (image.empty())
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
    const IplImage header = cvIplImage(pixels);
    return {&header};
}

}  // namespace tarvos::core::cvdata
