#include "support/Output.h"

#include <tarvos/core/cvdata/MatView.h>

#include <algorithm>
#include <type_traits>
#include <utility>

using namespace tarvos::core::cvdata;

namespace {

TEST(MatViewTest, SharesThePixelsWhateverTheRegionOfInterest) {
    Image image(6, 5, Image::CHANNELS_BGR, Image::BITS_16U);
    cvSetImageROI(image.iplImage(), cvRect(1, 1, 2, 2));
    matView(image).setTo(cv::Scalar(1, 2, 3));
    EXPECT_EQ(matView(std::as_const(image)).at<cv::Vec3w>(4, 5), cv::Vec3w(1, 2, 3));
    const Image empty;
    EXPECT_TRUE(matView(empty).empty());
    Image described;
    described.updateFromOpencvHeader(image.iplImage());
    EXPECT_TRUE(matView(described).empty()) << "without a buffer";
}

TEST(MatViewTest, AbortsOnRowsThatAreNotAlignedToTheirValues) {
    for (const auto bits : {Image::BITS_16U, Image::BITS_32S, Image::BITS_32F, Image::BITS_64F}) {
        Image image(3, 4, Image::CHANNELS_GRAY, bits);
        std::fill_n(image.imageBuffer(), image.widthStep() * 4, static_cast<unsigned char>(0));
        image.row(3)[0] = 1;
        ASSERT_DEATH(matView(image), "cannot compute on this stride; use matCopy") << bits;
        const cv::Mat copy = matCopy(image);
        EXPECT_EQ(*copy.ptr(3), 1) << bits;
        const Image packed = imageOf(copy);
        EXPECT_EQ(matView(packed).rows, 4) << bits;
        const Image row(3, 1, Image::CHANNELS_GRAY, bits);
        EXPECT_EQ(matView(row).cols, 3) << bits;
    }
    EXPECT_TRUE(matCopy(Image()).empty());
}

/// A temporary has no view.
constexpr auto VIEW = [](auto&& image) -> decltype(matView(std::forward<decltype(image)>(image))) { return {}; };
static_assert(std::is_invocable_v<decltype(VIEW), Image&> && std::is_invocable_v<decltype(VIEW), const Image&>);
static_assert(!std::is_invocable_v<decltype(VIEW), Image> && !std::is_invocable_v<decltype(VIEW), const Image>);

TEST(ImageOfTest, CopiesAPartOfAMat) {
    const cv::Mat pixels(5, 6, CV_8UC4, cv::Scalar(1, 2, 3, 4));
    const Image part = imageOf(pixels(cv::Rect(2, 1, 3, 2)));
    EXPECT_EQ(matView(part).at<cv::Vec4b>(1, 2), cv::Vec4b(1, 2, 3, 4));
    EXPECT_EQ(part.widthStep(), 12) << "its own, not the parent's";
    EXPECT_TRUE(imageOf(cv::Mat()).empty());
}

TEST(ImageOfTest, AbortsOnWhatNoImageHolds) {
    EXPECT_DEATH(imageOf(cv::Mat(2, 2, CV_16F)), "This depth is not implemented!");
    EXPECT_DEATH(imageOf(cv::Mat(2, 2, CV_8UC2)), "does not have 1, 3 or 4 channels");
    const int sizes[] = {2, 2, 2};
    EXPECT_DEATH(imageOf(cv::Mat(3, sizes, CV_8U)), "more than 2 dimensions");
}

}  // namespace
