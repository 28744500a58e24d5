#include "core/cvdata/MatView.h"
#include "support/ContractDeath.h"
#include "support/Pixels.h"

#include <functional>
#include <memory>
#include <tuple>
#include <vector>

using namespace tarvos::core::cvdata;

namespace {

Image painted(int width, int height, Image::ColorChannels channels, Image::BitsPerChannel bits) {
    Image image(width, height, channels, bits);
    paint(*image.iplImage());
    return image;
}

/// The image of a part of a larger picture, whose stride is no rule's.
Image partOfPicture(int type, int margin) {
    cv::Mat whole(3, 5 + margin, type);
    cv::randu(whole, 0, 200);
    return imageOf(whole(cv::Rect(0, 0, 5, 3)));
}

/// Images whose strides and alignments come about in every way there is.
using Kind = std::pair<std::string, std::function<Image()>>;
const std::vector<Kind> KINDS = {{"Empty", [] { return Image(); }},
                                 {"Sized", [] { return painted(5, 3, Image::CHANNELS_BGR, Image::BITS_8U); }},
                                 {"Copied", [] { return Image(painted(5, 3, Image::CHANNELS_BGR, Image::BITS_8U)); }},
                                 {"Part", [] { return partOfPicture(CV_8UC3, 3); }},
                                 {"Rgb", [] { return painted(5, 3, Image::CHANNELS_RGB, Image::BITS_8U); }},
                                 {"AlignedTo8", [] { return imageOf(cv::Mat(3, 8, CV_8UC3, cv::Scalar(7, 8, 9))); }},
                                 {"Deep", [] { return painted(5, 3, Image::CHANNELS_BGR, Image::BITS_16U); }},
                                 {"DeepPart", [] { return partOfPicture(CV_16UC3, 1); }},
                                 {"OneRow", [] { return painted(3, 1, Image::CHANNELS_GRAY, Image::BITS_32F); }}};

class ImageAssignmentTest : public testing::TestWithParam<std::tuple<Kind, Kind>> {
protected:
    ImageAssignmentTest() { target.setTimeStamp(11); }

    /// The target shows the source, and what belongs to the target stayed.
    void expectAssigned() const {
        EXPECT_EQ(target.getTimeStamp(), 11);
        EXPECT_EQ(target.channels(), source.channels());
        ASSERT_EQ(target.empty(), source.empty());
        if (source.empty())
            return;
        EXPECT_EQ(pixelsOf(*target.iplImage()), pixelsOf(*source.iplImage()));
        const int step = target.iplImage()->widthStep;
        if (step == source.iplImage()->widthStep) {
            EXPECT_EQ(bytesOf(target), bytesOf(source)) << "what fills up the rows, too";
        } else if (step > bytesPerRow(*target.iplImage())) {
            EXPECT_EQ(bytesOf(target).back(), 0) << "what fills up the rows";
        }
        EXPECT_TRUE(header == nullptr || header == target.iplImage());
        expectSound(target);
    }

    const Image source = std::get<0>(GetParam()).second();
    Image target = std::get<1>(GetParam()).second();
    const IplImage* header = target.iplImage();
};

TEST_P(ImageAssignmentTest, CopiesAndThenKeepsTheBuffer) {
    target = source;
    expectAssigned();
    const unsigned char* buffer = target.imageBuffer();
    target = source;
    EXPECT_EQ(target.imageBuffer(), buffer);
    expectAssigned();
}

TEST_P(ImageAssignmentTest, MovingChangesNoBufferThatCopyingKeeps) {
    Image copied = std::get<1>(GetParam()).second();
    const unsigned char* before = copied.imageBuffer();
    copied = source;
    const bool copyKeeps = copied.imageBuffer() == before;
    const unsigned char* buffer = target.imageBuffer();
    target = std::get<0>(GetParam()).second();
    EXPECT_EQ(target.imageBuffer() == buffer, copyKeeps);
    EXPECT_EQ(target.channels(), copied.channels());
    EXPECT_EQ(target.getTimeStamp(), 11);
    EXPECT_TRUE(source.empty() || target.iplImage()->widthStep == copied.iplImage()->widthStep) << "by the rule";
}

INSTANTIATE_TEST_SUITE_P(, ImageAssignmentTest, testing::Combine(testing::ValuesIn(KINDS), testing::ValuesIn(KINDS)),
                         [](const auto& test) {
                             return std::get<0>(test.param).first + "Into" + std::get<1>(test.param).first;
                         });

class ImageCopyTest : public testing::TestWithParam<Kind> {};

TEST_P(ImageCopyTest, CopiesAreEqualToTheByteAndNew) {
    Image source = GetParam().second();
    source.setTimeStamp(5);
    const Image copy(source);
    const std::unique_ptr<Image> clone(source.clone());
    for (const Image* made : {&copy, static_cast<const Image*>(clone.get())}) {
        EXPECT_EQ(bytesOf(*made), bytesOf(source));
        EXPECT_NE(made->imageBuffer(), source.imageBuffer());
        EXPECT_EQ(made->getTimeStamp(), 0);
        expectSound(*made);
    }
    source = static_cast<const Image&>(source);
    source = static_cast<Image&&>(source);
    EXPECT_EQ(bytesOf(source), bytesOf(copy)) << "assigned to itself";
}

INSTANTIATE_TEST_SUITE_P(, ImageCopyTest, testing::ValuesIn(KINDS.begin() + 1, KINDS.end()),
                         [](const auto& test) { return test.param.first; });

TEST(ImageMoveTest, EqualGeometryKeepsBufferHeaderAndRegionOfInterest) {
    Image image = painted(6, 5, Image::CHANNELS_BGR, Image::BITS_8U);
    const unsigned char* held = image.imageBuffer();
    cvSetImageROI(image.iplImage(), cvRect(1, 1, 2, 2));
    image = painted(6, 5, Image::CHANNELS_BGR, Image::BITS_8U);
    EXPECT_EQ(cvGetImageROI(image.iplImage()).width, 2);
    EXPECT_EQ(held[0], 1) << "still there, as a sanitizer sees";
}

TEST(ImageMoveTest, TakesTheBufferOverWhereACopyWouldNeedANewOne) {
    std::vector<Image> images;
    images.push_back(painted(6, 5, Image::CHANNELS_RGBA, Image::BITS_8U));
    images.back().setTimeStamp(77);
    cvSetImageROI(images.back().iplImage(), cvRect(1, 1, 2, 2));
    const unsigned char* buffer = images.back().imageBuffer();
    images.resize(100);
    EXPECT_EQ(images[0].imageBuffer(), buffer);
    EXPECT_EQ(images[0].getTimeStamp(), 77);
    Image target(3, 3, Image::CHANNELS_GRAY, Image::BITS_8U);
    target = std::move(images[0]);
    EXPECT_EQ(target.imageBuffer(), buffer);
    EXPECT_EQ(target.iplImage()->roi, nullptr) << "a copy would have none";
    EXPECT_TRUE(images[0].empty());
}

TEST(ImageOutOfStepTest, StopsTheProcessThatAssignsOrCopiesFromIt) {
    Image source(4, 4, Image::CHANNELS_BGR, Image::BITS_8U);
    Image target;
    source.setChannels(Image::CHANNELS_BGRA);
    EXPECT_DEATH(target = source, "out of step");
    EXPECT_DEATH(target = std::move(source), "out of step");
    source.setChannels(Image::CHANNELS_BGR);
    source.iplImage()->height = 40;
    EXPECT_DEATH(Image copy(source), "out of step") << "nothing is read behind the buffer";
}

}  // namespace
