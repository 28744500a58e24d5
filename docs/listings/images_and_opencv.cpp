/// @file
/// The program of the guide "Images and OpenCV".

#include <opencv2/core/core_c.h>
#include <opencv2/imgproc.hpp>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/core/cvdata/TiledImage.h>
#include <tarvos/math/EigenMap.h>
#include <tarvos/math/SquareMatrix.h>

#include <iostream>
#include <vector>

using tarvos::core::cvdata::Image;
using tarvos::core::cvdata::imageOf;
using tarvos::core::cvdata::TiledImage;

int main() {
    // A view for OpenCV's C++ functions, in one call.
    Image image(320, 240, Image::CHANNELS_BGR, Image::BITS_8U);
    cv::Mat pixels = matView(image);
    pixels.setTo(cv::Scalar(110, 143, 201));

    // From OpenCV to an image: the pixels are copied, here those of a part.
    Image copy = imageOf(pixels(cv::Rect(10, 10, 100, 80)));

    // A new image of any width that OpenCV can compute on.
    Image depth = imageOf(cv::Mat::zeros(4, 3, CV_32F));
    matView(depth).setTo(1.5);

    // A conversion in place changes the order of the channels; set the layout.
    cv::cvtColor(pixels, pixels, cv::COLOR_BGR2RGB);
    image.setChannels(Image::CHANNELS_RGB);
    const bool lost =
        Image(image).channels() == Image::CHANNELS_BGR;  // a copy knows what the header knows

    // Frames of one size are copied without an allocation; a vector of images grows without
    // copying.
    Image last(100, 80, Image::CHANNELS_BGR, Image::BITS_8U);
    last = copy;
    const unsigned char* buffer = last.imageBuffer();
    last = Image(copy);  // a copy too: pointers taken before stay valid
    std::vector<Image> history;
    history.push_back(std::move(copy));
    const bool kept = last.imageBuffer() == buffer && copy.empty();

    // A view for Eigen, in one call.
    tarvos::math::SquareMatrix matrix(2);
    tarvos::math::eigenMap(matrix).setIdentity();

    // A mosaic of two.
    TiledImage mosaic(1, 2, 100, 80, Image::CHANNELS_BGR, Image::BITS_8U);
    mosaic.setCellImage(0, 0, &history[0]);
    mosaic.setCellImage(0, 1, &last);
    std::cout << mosaic.width() << " x " << mosaic.height() << ", " << lost << kept << std::endl;
}
