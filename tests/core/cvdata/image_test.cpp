#include "core/cvdata/Image.h"

#include "support/ContractDeath.h"
#include "support/Pixels.h"

#include <opencv2/core.hpp>
#include <opencv2/core/core_c.h>

#include <climits>
#include <cstring>
#include <new>
#include <tuple>

using namespace tarvos::core::cvdata;

namespace {

TEST(ImageTest, RowsAreLaidOutByTheRule) {
    using Case = std::tuple<int, int, Image::ColorChannels, Image::BitsPerChannel, int, int, unsigned int>;
    for (const auto& [width, height, channels, bits, nofChannels, step, depth] :
         {Case{640, 480, Image::CHANNELS_BGR, Image::BITS_8U, 3, 1920, IPL_DEPTH_8U},
          Case{5, 2, Image::CHANNELS_BGR, Image::BITS_8U, 3, 16, IPL_DEPTH_8U},
          Case{5, 2, Image::CHANNELS_BGR, Image::BITS_16U, 3, 31, IPL_DEPTH_16U},
          Case{3, 1, Image::CHANNELS_GRAY, Image::BITS_32F, 1, 12, IPL_DEPTH_32F},  // a single row without its fill
          Case{3, 2, Image::CHANNELS_GRAY, Image::BITS_32F, 1, 13, IPL_DEPTH_32F},
          Case{2, 1, Image::CHANNELS_BGRA, Image::BITS_64F, 4, 64, IPL_DEPTH_64F},
          Case{7, 3, Image::CHANNELS_RGB, Image::BITS_8S, 3, 24, IPL_DEPTH_8S},
          Case{1, 2, Image::CHANNELS_OTHER_3, Image::BITS_16S, 3, 7, IPL_DEPTH_16S},
          Case{2, 2, Image::CHANNELS_RGBA, Image::BITS_32S, 4, 32, IPL_DEPTH_32S},
          Case{0, 0, Image::CHANNELS_BGR, Image::BITS_8U, 3, 0, IPL_DEPTH_8U}}) {
        SCOPED_TRACE(testing::Message() << width << "x" << height << "x" << bits);
        const Image image(width, height, channels, bits);
        EXPECT_EQ(image.nofChannels(), nofChannels);
        EXPECT_EQ(image.iplImage()->widthStep, step);
        EXPECT_EQ(static_cast<unsigned int>(image.iplImage()->depth), depth);
        EXPECT_EQ(Image(image).bitsPerChannel(), bits);
        expectSound(image);
    }
}

TEST(ImageTest, StopsOnWhatItCannotDescribe) {
    const std::string file = "core/cvdata/Image.cpp";
    const std::string image = "tarvos::core::cvdata::Image::";
    const std::string copyOf = image + "Image(const tarvos::core::cvdata::Image&)";
    const auto layout = static_cast<Image::ColorChannels>(6);
    const auto depth = static_cast<Image::BitsPerChannel>(24);
    const Image empty;
    Image broken(2, 2, Image::CHANNELS_GRAY, Image::BITS_8U);
    IplImage header = *broken.iplImage();

    EXPECT_CONTRACT(Image(2, 2, layout, Image::BITS_8U), file,
                    "void " + image + "setNofChannels(" + image + "ColorChannels)",
                    "false && \"not supported number of mChannels\"");
    EXPECT_CONTRACT(Image(2, 2, Image::CHANNELS_BGR, depth), file, "void " + image + "updateOpencvHeader()",
                    "0 && \"Image: This depth is not implemented!\"");
    EXPECT_CONTRACT(Image copy(empty), file, copyOf,
                    "(((image.iplImage()) != __null && ((const IplImage*)(image.iplImage()))->nSize == "
                    "sizeof(IplImage)) && ((IplImage*)image.iplImage())->imageData != __null) && \"Source image "
                    "doesn't exist, can't use the copy constructor 'cvdata::Image(const Image& image)'.\"");
    EXPECT_DEATH(empty.clone(), "empty image cannot be cloned");
    header.depth = IPL_DEPTH_1U;
    EXPECT_CONTRACT(Image copy(&header), file, "void " + image + "updateFromOpencvHeader(const IplImage*)",
                    "0 && \"Image: This depth is not implemented!\"");
    header.nChannels = 2;
    EXPECT_CONTRACT(Image copy(&header), file, image + "Image(const IplImage*)",
                    "(image->nChannels == 1) || (image->nChannels == 3) || (image->nChannels == 4)");
    broken.iplImage()->nChannels = 2;
    EXPECT_CONTRACT(Image copy(broken), file, copyOf,
                    "(image.iplImage()->nChannels == 1) || (image.iplImage()->nChannels == 3) || "
                    "(image.iplImage()->nChannels == 4)");
}

TEST(ImageTest, ImpossibleSizesAreAnAllocationFailureAndLoseNothing) {
    Image image(5, 4, Image::CHANNELS_BGR, Image::BITS_16U);
    paint(*image.iplImage());
    const auto before = pixelsOf(*image.iplImage());
    const std::pair<int, int> sizes[] = {{-1, 5}, {5, -1}, {-2, -3}, {65536, 65536}, {INT_MAX, 1}, {INT_MAX, INT_MAX}};
    for (const auto& [width, height] : sizes) {
        EXPECT_THROW(Image(width, height, Image::CHANNELS_BGRA, Image::BITS_64F), std::bad_alloc);
        EXPECT_THROW(image.resizeMemory(width, height), std::bad_alloc);
        EXPECT_EQ(pixelsOf(*image.iplImage()), before);
        expectSound(image);
    }
}

TEST(ImageTest, ResizingGivesANewBufferUnderTheSameHeader) {
    Image image(5, 4, Image::CHANNELS_BGR, Image::BITS_8U);
    IplImage* header = image.iplImage();
    cvSetImageROI(header, cvRect(1, 1, 2, 2));
    image.updateOpencvHeader();
    EXPECT_EQ(header->roi, nullptr);
    image.resizeMemory(9, 7);
    EXPECT_EQ(image.iplImage(), header);
    EXPECT_EQ(header->widthStep, 28);
    expectSound(image);
    image.setChannels(Image::CHANNELS_BGRA);
    EXPECT_DEATH(image.updateOpencvHeader(), "description does not fit the buffer");
    EXPECT_DEATH(Image() = static_cast<const Image&>(image), "out of step");
    image.resizeMemory(9, 7);
    expectSound(image);
}

TEST(ImageTest, LayoutIsReadFromTheChannelSequence) {
    const std::pair<const char*, Image::ColorChannels> cases[] = {
        {"G", Image::CHANNELS_GRAY},  {"BGR", Image::CHANNELS_BGR},   {"RGB", Image::CHANNELS_RGB},
        {"YUV", Image::CHANNELS_BGR}, {"BGRA", Image::CHANNELS_BGRA}, {"RGBA", Image::CHANNELS_RGBA}};
    for (const auto& [sequence, expected] : cases) {
        const cv::Mat pixels(2, 3, CV_8UC(static_cast<int>(std::strlen(sequence))), cv::Scalar::all(7));
        IplImage header = cvIplImage(pixels);
        std::copy_n(sequence, header.nChannels, header.channelSeq);
        EXPECT_EQ(Image(&header).channels(), expected) << sequence;
    }
}

TEST(ImageTest, CopiesAViewIntoALargerImageAndRejectsTooShortAStride) {
    cv::Mat whole(20, 20, CV_16UC3);
    cv::randu(whole, 0, 65536);
    IplImage header = cvIplImage(whole(cv::Rect(13, 15, 7, 5)));  // ends where the allocation of the whole ends
    const Image image(&header);
    EXPECT_EQ(pixelsOf(*image.iplImage()), pixelsOf(header));
    EXPECT_EQ(image.iplImage()->widthStep, 120);
    expectSound(image);
    for (header.height = 1; header.height <= 2; ++header.height) {
        for (header.widthStep = -42; header.widthStep <= 42; header.widthStep += 83)
            EXPECT_THROW(Image copy(&header), cv::Exception);
    }
}

}  // namespace
