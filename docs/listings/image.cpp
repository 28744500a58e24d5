/// @file
/// Images and mosaics; shows pieces of the reference.

#include <opencv2/core/core_c.h>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/core/cvdata/TiledImage.h>

#include <string>
#include <vector>

using tarvos::core::cvdata::Image;
using tarvos::core::cvdata::TiledImage;

namespace {

int invert(const std::string& path) {
    //! [image]
    Image image(path);
    if (image.empty())
        return 1;                               // which has been reported
    cvNot(image.iplImage(), image.iplImage());  // OpenCV, C
    cv::Mat view = matView(image);              // OpenCV, C++: nothing is copied
    cv::flip(view, view, 1);
    image.imageBuffer()[0] = 255;  // the first pixel's blue, in all three
    return image.save("inverted.png") ? 0 : 1;
    //! [image]
}

int showAll(std::vector<Image>& frames) {
    //! [mosaic]
    TiledImage mosaic(4, 4, 160, 120, Image::CHANNELS_BGR, Image::BITS_8U);
    for (std::size_t i = 0; i < 16; ++i)
        mosaic.setCellImage(i / 4, i % 4, &frames[i]);  // each 160 x 120, 8-bit BGR
    return mosaic.save("mosaic.png") ? 0 : 1;
    //! [mosaic]
}

}  // namespace

int main() {
    std::vector<Image> frames;
    for (int i = 0; i < 16; ++i) {
        frames.emplace_back(160, 120, Image::CHANNELS_BGR, Image::BITS_8U);
        matView(frames.back()).setTo(cv::Scalar::all(15 * i));
    }
    return showAll(frames) + invert("mosaic.png");
}
