#include "core/cvdata/Image.h"

#include "support/ContractDeath.h"
#include "support/Pixels.h"

#include <opencv2/core.hpp>
#include <opencv2/core/core_c.h>

#include <climits>
#include <memory>
#include <new>

using namespace tarvos::core::cvdata;

namespace {

const std::string IMAGE_CPP = "core/cvdata/Image.cpp";
const std::string IMAGE = "tarvos::core::cvdata::Image::";

struct Geometry {
    int width, height;
    Image::ColorChannels channels;
    Image::BitsPerChannel bits;
    int nofChannels, step;
    int headerStep;  // OpenCV drops the fill of a single row
    unsigned int depth;
};

class ImageGeometryTest : public testing::TestWithParam<Geometry> {};

TEST_P(ImageGeometryTest, RowsAreLaidOutByTheRule) {
    const Geometry& g = GetParam();
    const Image image(g.width, g.height, g.channels, g.bits);
    EXPECT_EQ(image.nofChannels(), g.nofChannels);
    EXPECT_EQ(image.iplImage()->widthStep, g.headerStep);
    EXPECT_EQ(static_cast<unsigned int>(image.iplImage()->depth), g.depth);
    EXPECT_EQ(image.iplImage()->imageSize, g.headerStep * g.height);
    EXPECT_EQ(image.getTimeStamp(), 0);
    expectSound(image);
}

INSTANTIATE_TEST_SUITE_P(
    Geometries, ImageGeometryTest,
    testing::Values(Geometry{640, 480, Image::CHANNELS_BGR, Image::BITS_8U, 3, 1920, 1920, IPL_DEPTH_8U},
                    Geometry{5, 2, Image::CHANNELS_BGR, Image::BITS_8U, 3, 16, 16, IPL_DEPTH_8U},
                    Geometry{5, 2, Image::CHANNELS_BGR, Image::BITS_16U, 3, 31, 31, IPL_DEPTH_16U},
                    Geometry{3, 1, Image::CHANNELS_GRAY, Image::BITS_32F, 1, 13, 12, IPL_DEPTH_32F},
                    Geometry{3, 2, Image::CHANNELS_GRAY, Image::BITS_32F, 1, 13, 13, IPL_DEPTH_32F},
                    Geometry{2, 1, Image::CHANNELS_BGRA, Image::BITS_64F, 4, 64, 64, IPL_DEPTH_64F},
                    Geometry{7, 3, Image::CHANNELS_RGB, Image::BITS_8S, 3, 24, 24, IPL_DEPTH_8S},
                    Geometry{1, 2, Image::CHANNELS_OTHER_3, Image::BITS_16S, 3, 7, 7, IPL_DEPTH_16S},
                    Geometry{2, 2, Image::CHANNELS_RGBA, Image::BITS_32S, 4, 32, 32, IPL_DEPTH_32S},
                    Geometry{0, 0, Image::CHANNELS_BGR, Image::BITS_8U, 3, 0, 0, IPL_DEPTH_8U}));

TEST(ImageTest, StartsEmpty) {
    const Image image;
    EXPECT_EQ(image.width(), 0);
    EXPECT_EQ(image.height(), 0);
    EXPECT_EQ(image.channels(), Image::CHANNELS_RGB);
    EXPECT_EQ(image.nofChannels(), 3);
    EXPECT_EQ(image.bitsPerChannel(), Image::BITS_8U);
    EXPECT_EQ(image.imageBuffer(), nullptr);
    EXPECT_EQ(image.iplImage(), nullptr);
    EXPECT_EQ(image.type(), CvData::REPR_IMAGE);
}

TEST(ImageTest, StopsOnWhatItCannotDescribe) {
    const auto layout = static_cast<Image::ColorChannels>(6);
    const auto depth = static_cast<Image::BitsPerChannel>(24);
    const Image empty;
    Image image(2, 2, Image::CHANNELS_GRAY, Image::BITS_8U);
    IplImage header = *image.iplImage();

    EXPECT_CONTRACT(Image(2, 2, layout, Image::BITS_8U), IMAGE_CPP,
                    "void " + IMAGE + "setNofChannels(" + IMAGE + "ColorChannels)",
                    "false && \"not supported number of mChannels\"");
    EXPECT_CONTRACT(Image(2, 2, Image::CHANNELS_BGR, depth), IMAGE_CPP,
                    "void " + IMAGE + "updateOpencvHeader()",
                    "0 && \"Image: This depth is not implemented!\"");
    EXPECT_CONTRACT(
        Image copy(empty), IMAGE_CPP, IMAGE + "Image(const tarvos::core::cvdata::Image&)",
        "(((image.iplImage()) != __null && ((const IplImage*)(image.iplImage()))->nSize == "
        "sizeof(IplImage)) && ((IplImage*)image.iplImage())->imageData != __null) && \"Source image "
        "doesn't exist, can't use the copy constructor 'cvdata::Image(const Image& image)'.\"");
    EXPECT_EXIT(empty.clone(), testing::KilledBySignal(SIGABRT), "empty image cannot be cloned");
    EXPECT_EXIT(Image(static_cast<const IplImage*>(nullptr)), testing::KilledBySignal(SIGABRT),
                "no header to copy");

    header.depth = IPL_DEPTH_1U;
    EXPECT_CONTRACT(Image copy(&header), IMAGE_CPP,
                    "void " + IMAGE + "updateFromOpencvHeader(const IplImage*)",
                    "0 && \"Image: This depth is not implemented!\"");
    header.nChannels = 2;
    EXPECT_CONTRACT(Image copy(&header), IMAGE_CPP, IMAGE + "Image(const IplImage*)",
                    "(image->nChannels == 1) || (image->nChannels == 3) || (image->nChannels == 4)");
    image.iplImage()->nChannels = 2;
    EXPECT_CONTRACT(Image copy(image), IMAGE_CPP, IMAGE + "Image(const tarvos::core::cvdata::Image&)",
                    "(image.iplImage()->nChannels == 1) || (image.iplImage()->nChannels == 3) || "
                    "(image.iplImage()->nChannels == 4)");
}

TEST(ImageTest, ImpossibleSizesAreAnAllocationFailureAndLoseNothing) {
    Image image(5, 4, Image::CHANNELS_BGR, Image::BITS_16U);
    paint(*image.iplImage());
    const auto before = pixelsOf(*image.iplImage());
    const std::pair<int, int> sizes[] = {{-1, 5},        {5, -1},      {-2, -3},
                                         {65536, 65536}, {INT_MAX, 1}, {INT_MAX, INT_MAX}};
    for (const auto& [width, height] : sizes) {
        EXPECT_THROW(Image(width, height, Image::CHANNELS_BGRA, Image::BITS_64F), std::bad_alloc);
        EXPECT_THROW(image.resizeMemory(width, height), std::bad_alloc);
        EXPECT_EQ(pixelsOf(*image.iplImage()), before);
        expectSound(image);
    }
}

TEST(ImageTest, ResizingGivesANewBufferOverTheSameHeader) {
    Image image(5, 4, Image::CHANNELS_BGR, Image::BITS_8U);
    IplImage* header = image.iplImage();
    cvSetImageROI(header, cvRect(1, 1, 2, 2));
    image.resizeMemory(9, 7);
    EXPECT_EQ(image.iplImage(), header);
    EXPECT_EQ(image.width(), 9);
    EXPECT_EQ(header->widthStep, 28);
    expectSound(image);
    image.setChannels(Image::CHANNELS_BGRA);
    EXPECT_DEATH(image.updateOpencvHeader(), "description does not fit the buffer");
    EXPECT_DEATH(Image() = image, "out of step");
    image.resizeMemory(9, 7);
    expectSound(image);
}

TEST(ImageTest, LayoutIsReadFromTheChannelSequence) {
    const struct {
        int nofChannels;
        const char* sequence;
        Image::ColorChannels expected;
    } cases[] = {{1, "GRAY", Image::CHANNELS_GRAY}, {3, "BGR", Image::CHANNELS_BGR},
                 {3, "RGB", Image::CHANNELS_RGB},   {3, "YUV", Image::CHANNELS_BGR},
                 {4, "BGRA", Image::CHANNELS_BGRA}, {4, "RGBA", Image::CHANNELS_RGBA},
                 {4, "ABGR", Image::CHANNELS_RGBA}};
    for (const auto& c : cases) {
        const cv::Mat pixels(2, 3, CV_8UC(c.nofChannels), cv::Scalar::all(7));
        IplImage header = cvIplImage(pixels);
        std::copy_n(c.sequence, 4, header.channelSeq);
        EXPECT_EQ(Image(&header).channels(), c.expected) << c.sequence;
    }
}

TEST(ImageTest, CopiesAViewIntoALargerImage) {
    cv::Mat whole(20, 20, CV_16UC3);
    cv::randu(whole, 0, 65536);
    const cv::Mat corner = whole(cv::Rect(13, 15, 7, 5));  // ends where the allocation of the whole ends
    const IplImage header = cvIplImage(corner);
    const Image image(&header);
    EXPECT_EQ(pixelsOf(*image.iplImage()), pixelsOf(header));
    EXPECT_EQ(image.iplImage()->widthStep, 120);
    expectSound(image);
    whole.setTo(0);
    EXPECT_NE(pixelsOf(*image.iplImage()), pixelsOf(header));
}

TEST(ImageTest, RejectsAStrideShorterThanARow) {
    for (const int rows : {1, 2}) {
        const cv::Mat pixels(rows, 8, CV_8UC3, cv::Scalar::all(1));
        IplImage header = cvIplImage(pixels);
        header.widthStep = 20;
        EXPECT_THROW(Image copy(&header), cv::Exception);
        header.widthStep = -24;
        EXPECT_THROW(Image copy(&header), cv::Exception);
    }
}

TEST(ImageTest, CopyAndCloneStartAtTimeStampZero) {
    Image image(6, 3, Image::CHANNELS_RGB, Image::BITS_32F);
    paint(*image.iplImage());
    image.setTimeStamp(42);
    const std::unique_ptr<Image> clone(image.clone());
    const Image copy(image);
    for (const Image* made : {static_cast<const Image*>(clone.get()), &copy}) {
        EXPECT_EQ(made->getTimeStamp(), 0);
        EXPECT_EQ(made->channels(), Image::CHANNELS_BGR) << "what the header says";
        EXPECT_NE(made->imageBuffer(), image.imageBuffer());
        EXPECT_EQ(pixelsOf(*made->iplImage()), pixelsOf(*image.iplImage()));
        expectSound(*made);
    }
}

TEST(ImageTest, OpenCvWorksOnTheImagesOwnPixels) {
    const Image image(16, 8, Image::CHANNELS_BGR, Image::BITS_8U);
    cvSet(image.iplImage(), cvScalar(1, 2, 3));
    EXPECT_EQ(image.imageBuffer()[5], 3);
    cv::cvarrToMat(image.iplImage()).at<cv::Vec3b>(7, 15)[0] = 200;
    EXPECT_EQ(image.imageBuffer()[16 * 3 * 8 - 3], 200);
}

}  // namespace
