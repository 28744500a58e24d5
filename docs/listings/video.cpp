/// @file
/// The video library; shows pieces of the reference.

#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/video/FrameSource.h>
#include <tarvos/video/VideoFile.h>

#include <iostream>

using namespace tarvos::video;
using tarvos::core::cvdata::Image;

int main() {
    Image image(320, 240, Image::CHANNELS_BGR, Image::BITS_8U);
    matView(image).setTo(cv::Scalar(110, 143, 201));
    //! [file]
    VideoFile video("listing.avi", 25.0);
    for (int i = 0; i < 10; ++i)
        video.add(image);
    video.finish();  // whole, or std::runtime_error
    //! [file]

    //! [source]
    const auto source = FrameSource::open("listing.avi");  // or a directory of images
    Image frame;
    while (source->read(frame))
        std::cout << "frame " << source->number() << " at " << source->time() << " s" << std::endl;
    //! [source]
    return source->number() == 9 ? 0 : 1;
}
