#include "core/cvdata/Image.h"

#include "core/cvdata/MatView.h"
#include "support/ContractDeath.h"
#include "support/Pixels.h"

#include <climits>
#include <cstring>
#include <new>

using namespace tarvos::core::cvdata;

namespace {

struct Geometry {
    int width, height;
    Image::ColorChannels channels;
    Image::BitsPerChannel bits;
    int nofChannels, step;
    unsigned int depth;
};
const Geometry GEOMETRIES[] = {{640, 480, Image::CHANNELS_BGR, Image::BITS_8U, 3, 1920, IPL_DEPTH_8U},
                               {5, 2, Image::CHANNELS_BGR, Image::BITS_8U, 3, 16, IPL_DEPTH_8U},
                               {5, 2, Image::CHANNELS_BGR, Image::BITS_16U, 3, 31, IPL_DEPTH_16U},
                               {3, 1, Image::CHANNELS_GRAY, Image::BITS_32F, 1, 12, IPL_DEPTH_32F},  // one row: no fill
                               {3, 2, Image::CHANNELS_GRAY, Image::BITS_32F, 1, 13, IPL_DEPTH_32F},
                               {2, 1, Image::CHANNELS_BGRA, Image::BITS_64F, 4, 64, IPL_DEPTH_64F},
                               {7, 3, Image::CHANNELS_RGB, Image::BITS_8S, 3, 24, IPL_DEPTH_8S},
                               {1, 2, Image::CHANNELS_OTHER_3, Image::BITS_16S, 3, 7, IPL_DEPTH_16S},
                               {2, 2, Image::CHANNELS_RGBA, Image::BITS_32S, 4, 32, IPL_DEPTH_32S},
                               {0, 0, Image::CHANNELS_BGR, Image::BITS_8U, 3, 0, IPL_DEPTH_8U}};

class ImageOfSizeTest : public testing::TestWithParam<Geometry> {};

TEST_P(ImageOfSizeTest, IsLaidOutByTheRule) {
    const auto& [width, height, channels, bits, nofChannels, step, depth] = GetParam();
    const Image image(width, height, channels, bits);
    EXPECT_EQ(image.nofChannels(), nofChannels);
    EXPECT_EQ(image.iplImage()->widthStep, step);
    EXPECT_EQ(static_cast<unsigned int>(image.iplImage()->depth), depth);
    EXPECT_EQ(Image(image).bitsPerChannel(), bits);
    expectSound(image);
}

INSTANTIATE_TEST_SUITE_P(, ImageOfSizeTest, testing::ValuesIn(GEOMETRIES), [](const auto& test) {
    return cv::format("%dx%d_%d", test.param.width, test.param.height, static_cast<int>(test.index));
});

class ImageContractTest : public testing::Test {
protected:
    const std::string file = "core/cvdata/Image.cpp";
    const std::string type = "tarvos::core::cvdata::Image::";
    const Image empty;
    Image image{4, 4, Image::CHANNELS_GRAY, Image::BITS_8U};
    IplImage header = *image.iplImage();
};

TEST_F(ImageContractTest, StopsOnALayoutOrDepthThatThereIsNot) {
    EXPECT_CONTRACT(Image(2, 2, static_cast<Image::ColorChannels>(6), Image::BITS_8U), file,
                    "void " + type + "setNofChannels(" + type + "ColorChannels)",
                    "false && \"not supported number of mChannels\"");
    EXPECT_CONTRACT(Image(2, 2, Image::CHANNELS_BGR, static_cast<Image::BitsPerChannel>(24)), file,
                    "void " + type + "updateOpencvHeader()", "0 && \"Image: This depth is not implemented!\"");
    header.depth = IPL_DEPTH_1U;
    EXPECT_CONTRACT(Image copy(&header), file, "void " + type + "updateFromOpencvHeader(const IplImage*)",
                    "0 && \"Image: This depth is not implemented!\"");
}

TEST_F(ImageContractTest, StopsOnAHeaderThatIsNoImage) {
    const std::string copyOf = type + "Image(const tarvos::core::cvdata::Image&)";
    EXPECT_DEATH(Image(static_cast<const IplImage*>(nullptr)), "there is no header to copy");
    EXPECT_DEATH(image.updateFromOpencvHeader(nullptr), "there is no header to read");
    header.imageData = nullptr;
    EXPECT_DEATH(Image copy(&header), "the header has no pixels");
    header.nChannels = 2;
    EXPECT_CONTRACT(Image copy(&header), file, type + "Image(const IplImage*)",
                    "(image->nChannels == 1) || (image->nChannels == 3) || (image->nChannels == 4)");
    image.iplImage()->nChannels = 2;
    EXPECT_CONTRACT(Image copy(image), file, copyOf,
                    "(image.iplImage()->nChannels == 1) || (image.iplImage()->nChannels == 3) || "
                    "(image.iplImage()->nChannels == 4)");
    EXPECT_CONTRACT(Image copy(empty), file, copyOf,
                    "(((image.iplImage()) != __null && ((const IplImage*)(image.iplImage()))->nSize == "
                    "sizeof(IplImage)) && ((IplImage*)image.iplImage())->imageData != __null) && \"Source image "
                    "doesn't exist, can't use the copy constructor 'cvdata::Image(const Image& image)'.\"");
    EXPECT_DEATH(empty.clone(), "an empty image cannot be cloned");
}

TEST_F(ImageContractTest, StopsOnADescriptionThatReachesOutsideTheBuffer) {
    for (const auto& [width, height, step] :
         {std::tuple{4, 5, 4}, {4, 4, 5}, {17, 1, 4}, {-1, 4, 4}, {4, -1, 4}, {4, 4, -4}, {4, INT_MAX, INT_MAX}}) {
        SCOPED_TRACE(testing::Message() << width << "x" << height << " in steps of " << step);
        header.width = width;
        header.height = height;
        header.widthStep = step;
        image.updateFromOpencvHeader(&header);
        EXPECT_DEATH(image.updateOpencvHeader(), "description does not fit the buffer");
    }
}

TEST_F(ImageContractTest, AStrideThatOpencvRejectsIsItsErrorAndChangesNothing) {
    image.setChannels(Image::CHANNELS_BGR);  // four rows of 12 bytes, 4 apart
    cvSetImageROI(image.iplImage(), cvRect(1, 1, 2, 2));
    EXPECT_THROW(image.updateOpencvHeader(), cv::Exception);
    EXPECT_EQ(image.iplImage()->nChannels, 1);
    EXPECT_EQ(cvGetImageROI(image.iplImage()).width, 2);
    image.resizeMemory(4, 4);
    expectSound(image);
}

TEST(ImageTest, TheHeaderMayDescribeLessThanTheBuffer) {
    Image image(8, 4, Image::CHANNELS_BGR, Image::BITS_8U);
    paint(*image.iplImage());
    IplImage header = *image.iplImage();
    header.height = 2;
    image.updateFromOpencvHeader(&header);
    IplImage* own = image.iplImage();
    cvSetImageROI(own, cvRect(1, 1, 2, 1));
    image.updateOpencvHeader();
    EXPECT_EQ(own->roi, nullptr);
    EXPECT_EQ(image.iplImage(), own);
    EXPECT_EQ(own->imageSize, 48);
    Image target;
    target = image;
    EXPECT_EQ(bytesOf(target), bytesOf(image));
    EXPECT_EQ(bytesOf(Image(image)), bytesOf(image));
}

TEST(ImageTest, ImpossibleSizesAreAnAllocationFailureAndLoseNothing) {
    Image image(5, 4, Image::CHANNELS_BGR, Image::BITS_16U);
    paint(*image.iplImage());
    const auto before = bytesOf(image);
    const std::pair<int, int> sizes[] = {{-1, 5},        {5, -1},      {0, -1},     {-2, -3},
                                         {65536, 65536}, {INT_MAX, 1}, {1, INT_MAX}};
    for (const auto& [width, height] : sizes) {
        EXPECT_THROW(Image(width, height, Image::CHANNELS_BGRA, Image::BITS_64F), std::bad_alloc);
        EXPECT_THROW(image.resizeMemory(width, height), std::bad_alloc);
        EXPECT_EQ(bytesOf(image), before) << width << "x" << height;
        expectSound(image);
    }
}

TEST(ImageTest, LayoutIsReadFromTheChannelSequence) {
    const std::pair<const char*, Image::ColorChannels> layouts[] = {
        {"G", Image::CHANNELS_GRAY},  {"BGR", Image::CHANNELS_BGR},   {"RGB", Image::CHANNELS_RGB},
        {"YUV", Image::CHANNELS_BGR}, {"BGRA", Image::CHANNELS_BGRA}, {"RGBA", Image::CHANNELS_RGBA}};
    for (const auto& [sequence, expected] : layouts) {
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
    const auto bytes = bytesOf(image);
    EXPECT_THAT(std::vector<char>(bytes.end() - 78, bytes.end()), testing::Each(0)) << "what fills up the last row";
    expectSound(image);
    for (header.height = 1; header.height <= 2; ++header.height)
        EXPECT_THROW((header.widthStep = 41, Image(&header)), cv::Exception);
}

TEST(MatViewTest, SharesPixelsAndCopiesThem) {
    Image image(6, 5, Image::CHANNELS_BGR, Image::BITS_16U);
    cvSetImageROI(image.iplImage(), cvRect(1, 1, 2, 2));
    matView(image).setTo(cv::Scalar(1, 2, 3));
    EXPECT_EQ(matView(std::as_const(image)).at<cv::Vec3w>(4, 5), cv::Vec3w(1, 2, 3))
        << "whatever the region of interest";
    const Image part = imageOf(matView(image)(cv::Rect(2, 1, 3, 2)));
    EXPECT_EQ(part.width(), 3);
    EXPECT_EQ(matView(part).at<cv::Vec3w>(1, 2), cv::Vec3w(1, 2, 3));
    EXPECT_TRUE(imageOf(cv::Mat()).empty());
    const Image empty;
    EXPECT_TRUE(matView(empty).empty());
}

}  // namespace
