#include "core/cvdata/TiledImage.h"
#include "support/Allocations.h"
#include "support/Pixels.h"

#include <opencv2/core.hpp>
#include <opencv2/core/core_c.h>

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

using namespace tarvos::core::cvdata;

namespace {

struct Kind {
    std::string name;
    std::function<Image()> make;
};

Image copyOfView(int width, int height, int type, int margin) {
    const cv::Mat whole(height, width + margin, type, cv::Scalar::all(3));
    const IplImage header = cvIplImage(whole(cv::Rect(0, 0, width, height)));
    return Image(&header);
}

/// Images whose strides and alignments come about in every way there is.
std::vector<Kind> kinds() {
    std::vector<Kind> kinds{{"empty", [] { return Image(); }}};
    for (const auto& [bits, depth] :
         {std::pair{Image::BITS_8U, CV_8U}, {Image::BITS_16U, CV_16U}, {Image::BITS_32F, CV_32F}}) {
        for (const auto& [width, height] : {std::pair{3, 1}, {3, 2}, {5, 3}, {8, 4}}) {
            const std::string name = std::to_string(width) + "x" + std::to_string(height) + "x" + std::to_string(bits);
            const Image image(width, height, Image::CHANNELS_BGR, bits);
            kinds.push_back(
                {"sized" + name, [=, b = bits, w = width, h = height] { return Image(w, h, Image::CHANNELS_BGR, b); }});
            kinds.push_back({"copied" + name, [=] { return Image(image); }});
            for (const int margin : {0, 1, 3})
                kinds.push_back({"view" + std::to_string(margin) + name, [=, d = depth, w = width, h = height] {
                                     return copyOfView(w, h, CV_MAKETYPE(d, 3), margin);
                                 }});
        }
    }
    return kinds;
}

TEST(ImageAssignmentTest, EveryKindIntoEveryKind) {
    for (const Kind& from : kinds()) {
        for (const Kind& to : kinds()) {
            SCOPED_TRACE(from.name + " into " + to.name);
            const Image source = from.make();
            Image target = to.make();
            target.setTimeStamp(11);
            const IplImage* header = target.iplImage();
            if (source.iplImage() == nullptr) {
                target = source;
                EXPECT_EQ(target.imageBuffer(), nullptr);
                EXPECT_EQ(target.iplImage(), nullptr);
                EXPECT_EQ(target.channels(), Image::CHANNELS_RGB);
                continue;
            }
            paint(*source.iplImage());
            const std::unique_ptr<Image> clone(target.iplImage() != nullptr ? target.clone() : source.clone());
            EXPECT_EQ(clone->getTimeStamp(), 0);
            expectSound(*clone);
            for (int round = 0; round < 2; ++round) {
                const unsigned char* buffer = target.imageBuffer();
                target = source;
                EXPECT_EQ(pixelsOf(*target.iplImage()), pixelsOf(*source.iplImage()));
                EXPECT_EQ(target.channels(), source.channels());
                EXPECT_EQ(target.getTimeStamp(), 11);
                EXPECT_TRUE(header == nullptr || header == target.iplImage());
                EXPECT_TRUE(round == 0 || buffer == target.imageBuffer()) << "equal geometry needs no new buffer";
                expectSound(target);
            }
            *clone = source;
            *clone = static_cast<const Image&>(*clone);
            *clone = static_cast<Image&&>(*clone);
            EXPECT_EQ(pixelsOf(*clone->iplImage()), pixelsOf(*source.iplImage())) << "assigned to itself";
            expectSound(*clone);
        }
    }
}

TEST(ImageAssignmentTest, TheTargetsRowsAreLaidOutByTheRule) {
    Image target = copyOfView(5, 3, CV_8UC3, 3);
    const Image source = copyOfView(5, 3, CV_8UC3, 3);
    EXPECT_EQ((target = source).iplImage()->widthStep, 16);
}

TEST(ImageAssignmentTest, FailedAllocationsLoseNothing) {
    if (allocations() == 0) GTEST_SKIP() << "valgrind allocates in its own way";
    const Image source(9, 9, Image::CHANNELS_BGR, Image::BITS_16U);
    Image image(5, 4, Image::CHANNELS_BGR, Image::BITS_8U);
    paint(*image.iplImage());
    TiledImage mosaic(1, 1, 5, 4, Image::CHANNELS_BGR, Image::BITS_8U);
    mosaic.setCellImage(0, 0, &image);
    const TiledImage other(2, 2, 8, 8, Image::CHANNELS_GRAY, Image::BITS_32F);
    const auto before = pixelsOf(*image.iplImage());
    const std::function<void()> operations[] = {[&] { image = source; }, [&] { image.resizeMemory(30, 30); },
                                                [&] { mosaic = other; }, [&] { Image copy(source); },
                                                [&] { delete source.clone(); }};
    for (const auto& operation : operations) {
        failAllocationAfter(0);
        EXPECT_THROW(operation(), std::bad_alloc);
        for (const Image* untouched : {static_cast<const Image*>(&image), static_cast<const Image*>(&mosaic)})
            EXPECT_EQ(pixelsOf(*untouched->iplImage()), before);
        mosaic.setCellImage(0, 0, &image);
    }
}

TEST(ImageAssignmentTest, MovingLeavesTheSourceEmptyAndSafe) {
    static_assert(std::is_nothrow_move_constructible_v<Image> && std::is_nothrow_move_assignable_v<Image>);
    std::vector<Image> images(2);
    images.emplace_back(6, 5, Image::CHANNELS_RGBA, Image::BITS_8U);
    images.back().setTimeStamp(77);
    const unsigned char* buffer = images.back().imageBuffer();
    images.resize(100);
    EXPECT_EQ(images[2].imageBuffer(), buffer);
    EXPECT_EQ(images[2].getTimeStamp(), 77);

    Image target(3, 3, Image::CHANNELS_GRAY, Image::BITS_8U);
    const IplImage* header = target.iplImage();
    target = std::move(images[2]);
    EXPECT_EQ(target.iplImage(), header);
    EXPECT_EQ(target.imageBuffer(), buffer);
    EXPECT_EQ(target.getTimeStamp(), 0);
    EXPECT_EQ(images[2].imageBuffer(), nullptr);
    EXPECT_EQ(images[2].iplImage(), nullptr);
    images[2] = target;
    cvSetImageROI(target.iplImage(), cvRect(1, 1, 2, 2));
    target = images[2];
    EXPECT_EQ(cvGetImageROI(target.iplImage()).width, 2) << "equal geometry: the header stays as it is";
}

}  // namespace
