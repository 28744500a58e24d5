#include "core/cvdata/TiledImage.h"
#include "support/Allocations.h"
#include "support/Pixels.h"

#include <opencv2/core.hpp>
#include <opencv2/core/core_c.h>

#include <functional>
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
    const struct {
        Image::BitsPerChannel bits;
        int depth;
    } depths[] = {{Image::BITS_8U, CV_8U}, {Image::BITS_16U, CV_16U}, {Image::BITS_32F, CV_32F}};
    for (const auto& [bits, depth] : depths) {
        for (const auto& [width, height] : {std::pair{3, 1}, {3, 2}, {5, 3}, {8, 4}}) {
            const std::string name =
                std::to_string(width) + "x" + std::to_string(height) + "x" + std::to_string(bits);
            const auto sized = [=, bits = bits, width = width, height = height] {
                return Image(width, height, Image::CHANNELS_BGR, bits);
            };
            kinds.push_back({"sized" + name, sized});
            kinds.push_back({"copied" + name, [=] {
                                 const Image image = sized();
                                 return Image(image);
                             }});
            for (const int margin : {0, 1, 3})
                kinds.push_back({"view" + std::to_string(margin) + name,
                                 [=, depth = depth, width = width, height = height] {
                                     return copyOfView(width, height, CV_MAKETYPE(depth, 3), margin);
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
            IplImage* header = target.iplImage();
            if (source.iplImage() == nullptr) {
                target = source;
                EXPECT_EQ(target.imageBuffer(), nullptr);
                EXPECT_EQ(target.iplImage(), nullptr);
                EXPECT_EQ(target.width() + target.height(), 0);
                continue;
            }
            paint(*source.iplImage());
            for (int round = 0; round < 2; ++round) {
                const unsigned char* buffer = target.imageBuffer();
                target = source;
                EXPECT_EQ(pixelsOf(*target.iplImage()), pixelsOf(*source.iplImage()));
                EXPECT_EQ(target.channels(), source.channels());
                EXPECT_EQ(target.getTimeStamp(), 11);
                expectSound(target);
                if (header != nullptr) {
                    EXPECT_EQ(target.iplImage(), header);
                }
                if (round == 1) {
                    EXPECT_EQ(target.imageBuffer(), buffer) << "equal geometry needs no new buffer";
                }
            }
        }
    }
}

TEST(ImageAssignmentTest, OntoItselfChangesNothing) {
    for (const Kind& kind : kinds()) {
        SCOPED_TRACE(kind.name);
        Image image = kind.make();
        const Image& alias = image;
        const unsigned char* buffer = image.imageBuffer();
        if (buffer == nullptr) {
            image = alias;
            EXPECT_EQ(image.iplImage(), nullptr);
            continue;
        }
        paint(*image.iplImage());
        const auto before = pixelsOf(*image.iplImage());
        image = alias;
        Image& self = image;
        image = std::move(self);
        EXPECT_EQ(image.imageBuffer(), buffer);
        EXPECT_EQ(pixelsOf(*image.iplImage()), before);
        expectSound(image);
    }
}

TEST(ImageAssignmentTest, FailedAllocationsLoseNothing) {
    const Image source(9, 9, Image::CHANNELS_BGR, Image::BITS_16U);
    Image image(5, 4, Image::CHANNELS_BGR, Image::BITS_8U);
    paint(*image.iplImage());
    const auto before = pixelsOf(*image.iplImage());
    TiledImage mosaic(1, 1, 5, 4, Image::CHANNELS_BGR, Image::BITS_8U);
    mosaic.setCellImage(0, 0, &image);
    const TiledImage other(2, 2, 8, 8, Image::CHANNELS_GRAY, Image::BITS_32F);
    const std::function<void()> operations[] = {
        [&] { image = source; },        [&] { image.resizeMemory(30, 30); },
        [&] { mosaic = other; },        [&] { Image copy(source); },
        [&] { delete source.clone(); }, [&] { Image made(3, 3, Image::CHANNELS_GRAY, Image::BITS_8U); }};
    for (const auto& operation : operations) {
        failAllocationAfter(0);
        EXPECT_THROW(operation(), std::bad_alloc);
        for (const Image* untouched :
             {static_cast<const Image*>(&image), static_cast<const Image*>(&mosaic)}) {
            EXPECT_EQ(pixelsOf(*untouched->iplImage()), before);
            expectSound(*untouched);
        }
        mosaic.setCellImage(0, 0, &image);
    }
}

TEST(ImageAssignmentTest, EqualGeometryKeepsTheHeadersRegion) {
    const Image source(8, 4, Image::CHANNELS_BGR, Image::BITS_8U);
    Image target(8, 4, Image::CHANNELS_BGR, Image::BITS_8U);
    cvSetImageROI(target.iplImage(), cvRect(1, 1, 2, 2));
    target = source;
    EXPECT_EQ(cvGetImageROI(target.iplImage()).width, 2);
    cvResetImageROI(target.iplImage());
}

TEST(ImageAssignmentTest, MovingLeavesTheSourceEmptyAndSafe) {
    static_assert(std::is_nothrow_move_constructible_v<Image> && std::is_nothrow_move_assignable_v<Image>);
    std::vector<Image> images(2);
    images.emplace_back(6, 5, Image::CHANNELS_RGBA, Image::BITS_8U);
    images.back().setTimeStamp(77);
    unsigned char* buffer = images.back().imageBuffer();
    images.resize(100);
    EXPECT_EQ(images[2].imageBuffer(), buffer);
    EXPECT_EQ(images[2].channels(), Image::CHANNELS_RGBA);
    EXPECT_EQ(images[2].getTimeStamp(), 77);

    cvSetImageROI(images[2].iplImage(), cvRect(1, 1, 2, 2));
    Image target(3, 3, Image::CHANNELS_GRAY, Image::BITS_8U);
    target.setTimeStamp(5);
    IplImage* header = target.iplImage();
    target = std::move(images[2]);
    EXPECT_EQ(target.iplImage(), header);
    EXPECT_EQ(target.imageBuffer(), buffer);
    EXPECT_EQ(target.getTimeStamp(), 5);
    EXPECT_EQ(cvGetImageROI(target.iplImage()).width, 2);
    EXPECT_EQ(images[2].imageBuffer(), nullptr);
    EXPECT_EQ(images[2].iplImage(), nullptr);
    EXPECT_EQ(images[2].width(), 0);
    cvResetImageROI(target.iplImage());
    images[2] = target;
    expectSound(images[2]);
}

}  // namespace
