#include "core/cvdata/Image.h"

#include "core/Contract.h"
#include "core/cvdata/ImageFile.h"

#include <opencv2/core/core_c.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <tuple>
#include <utility>

namespace tarvos::core::cvdata {

namespace {

constexpr std::int32_t DEFAULT_ALIGN = 4;
constexpr std::int64_t MAX_INT = std::numeric_limits<std::int32_t>::max();

struct DepthCode {
    Image::BitsPerChannel bits;
    int opencvDepth;
};

constexpr DepthCode DEPTH_CODES[] = {
    {Image::BITS_8U, IPL_DEPTH_8U},
    {Image::BITS_16U, IPL_DEPTH_16U},
    {Image::BITS_32F, IPL_DEPTH_32F},
    {Image::BITS_64F, IPL_DEPTH_64F},
    {Image::BITS_8S, static_cast<int>(IPL_DEPTH_8S)},
    {Image::BITS_16S, static_cast<int>(IPL_DEPTH_16S)},
    {Image::BITS_32S, static_cast<int>(IPL_DEPTH_32S)},
};

/// The depth with the given value in @p field, or null.
template <typename Field>
const DepthCode* findDepth(Field DepthCode::*field, Field value) {
    const auto* found = std::find_if(std::begin(DEPTH_CODES), std::end(DEPTH_CODES),
                                     [=](const DepthCode& depth) { return depth.*field == value; });
    return found == std::end(DEPTH_CODES) ? nullptr : found;
}

/// How many bytes lie behind @p image's pixels at least. What fills up the last row does not count: in a view into a
/// larger image it may lie outside the allocation.
std::int64_t readableBytes(const IplImage& image) {
    const std::int64_t row = std::int64_t{image.width} * image.nChannels * (image.depth & 0xFF) / 8;
    return image.height > 0 ? (std::int64_t{image.height} - 1) * image.widthStep + row : 0;
}

}  // namespace

bool Image::Description::operator==(const Description& other) const {
    const auto fields = [](const Description& d) {
        return std::tie(d.width, d.height, d.channels, d.nofChannels, d.bits, d.align, d.widthStep);
    };
    return fields(*this) == fields(other);
}

std::int64_t Image::Description::bytesPerRow() const {
    return std::int64_t{width} * nofChannels * std::abs(bits) / 8;
}

/// How far into the buffer the pixels reach. Of a single row OpenCV describes the pixels, whatever the stride.
std::int64_t Image::Description::reach() const {
    return height == 1 ? bytesPerRow() : widthStep * height;
}

/// The fill is counted in channel values, not in bytes: rows of more than 8 bits a value need not end on a multiple
/// of the alignment.
Image::Description Image::Description::laidOutByRule() const {
    const std::int64_t values = std::int64_t{width} * nofChannels;
    Description laidOut = *this;
    laidOut.widthStep = bytesPerRow() + (align > 0 ? (align - values % align) % align : 0);
    return laidOut;
}

/// Whether an OpenCV header can count the pixels.
bool Image::Description::isPossible() const {
    return width >= 0 && height >= 0 && widthStep >= 0 && widthStep <= MAX_INT && widthStep * height <= MAX_INT;
}

void Image::HeaderRelease::operator()(IplImage* header) const noexcept {
    cvReleaseImageHeader(&header);
}

Image::Image() noexcept : TimedData(REPR_IMAGE) {}

Image::Image(int width, int height, ColorChannels channels, BitsPerChannel bits) : TimedData(REPR_IMAGE) {
    setChannels(channels);
    mDescription.bits = bits;
    resizeMemory(width, height);
}

Image::Image(const Description& description) : TimedData(REPR_IMAGE), mDescription(description) {
    allocate();
    updateOpencvHeader();
}

Image::Image(const IplImage* image) : TimedData(REPR_IMAGE) {
    TARVOS_REQUIRE((image != NULL) && "Image: there is no header to copy.");
    TARVOS_REQUIRE((image->nChannels == 1) || (image->nChannels == 3) || (image->nChannels == 4));
    TARVOS_REQUIRE((image->imageData != NULL) && "Image: the header has no pixels.");
    copyFromHeader(image, readableBytes(*image));
}

Image::Image(std::string path) : TimedData(REPR_IMAGE) {
    const auto makeRows = [](void* loaded, int width, int height, imagefiles::Rows* rows) {
        try {
            auto& image = *static_cast<Image*>(loaded);
            image = Image(width, height, CHANNELS_BGR, BITS_8U);
            *rows = {image.mImageBuffer.get(), static_cast<std::size_t>(image.mDescription.widthStep)};
            return imagefiles::Outcome::DONE;
        } catch (const std::bad_array_new_length&) {
            return imagefiles::Outcome::FAILED;  // larger than an image can be
        } catch (const std::bad_alloc&) {
            return imagefiles::Outcome::NO_MEMORY;
        }
    };
    Image loaded;
    if (readImageFile(path, makeRows, &loaded))
        swapPixels(loaded);
}

Image::Image(const Image& image) : TimedData(REPR_IMAGE) {
    TARVOS_REQUIRE(CV_IS_IMAGE(image.iplImage()) &&
                   "Source image doesn't exist, can't use the copy constructor 'cvdata::Image(const Image& image)'.");
    TARVOS_REQUIRE((image.iplImage()->nChannels == 1) || (image.iplImage()->nChannels == 3) ||
                   (image.iplImage()->nChannels == 4));
    const IplImage* header = image.iplImage();
    const bool ownsPixels = header->imageData == reinterpret_cast<const char*>(image.mImageBuffer.get());
    TARVOS_REQUIRE((!ownsPixels || readableBytes(*header) <= std::int64_t{image.mImageSize}) &&
                   "Image: the source's description and its pixels are out of step.");
    copyFromHeader(header, ownsPixels ? std::int64_t{image.mImageSize} : readableBytes(*header));
}

Image::Image(Image&& image) noexcept : TimedData(image) {
    swapPixels(image);
}

Image::~Image() = default;

Image* Image::clone() const {
    TARVOS_REQUIRE((iplImage() != NULL) && "Image: an empty image cannot be cloned.");
    return new Image(*this);
}

Image& Image::operator=(const Image& image) {
    if (this == &image)
        return *this;
    if (image.empty()) {
        Image nothing;
        swapPixels(nothing);
        return *this;
    }
    TARVOS_REQUIRE(image.isInStep() && "Image: the source's description and its pixels are out of step.");
    const Description wanted = image.mDescription.laidOutByRule();
    if (!isLaidOut(wanted)) {
        Image fresh(wanted);
        swapPixels(fresh);
    }
    copyRows(image.mImageBuffer.get(), image.mDescription.widthStep, std::int64_t{image.mImageSize});
    return *this;
}

Image& Image::operator=(Image&& image) {  // NOLINT(*-noexcept-move-*,*-exception-escape)
    const Description wanted = image.mDescription.laidOutByRule();
    if (this == &image || isLaidOut(wanted) || !image.isLaidOut(wanted))
        return *this = static_cast<const Image&>(image);
    Image taken;
    taken.swapPixels(image);
    swapPixels(taken);
    cvResetImageROI(mIplImage.get());
    return *this;
}

bool Image::save(std::string path) const {
    const bool redFirst = mDescription.channels == CHANNELS_RGB || mDescription.channels == CHANNELS_RGBA;
    if (mIplImage == nullptr)
        return writeImageFile(path, nullptr, redFirst);
    IplImage whole = *mIplImage;  // without the region of interest
    whole.roi = nullptr;
    return writeImageFile(path, &whole, redFirst);
}

void Image::setNofChannels(ColorChannels channels) {
    switch (channels) {
        case CHANNELS_GRAY:
            mDescription.nofChannels = 1;
            break;
        case CHANNELS_BGR:
        case CHANNELS_RGB:
        case CHANNELS_OTHER_3:
            mDescription.nofChannels = 3;
            break;
        case CHANNELS_RGBA:
        case CHANNELS_BGRA:
            mDescription.nofChannels = 4;
            break;
        default:
            // GCC's __PRETTY_FUNCTION__ would leave out the class of the nested enumeration.
            contractViolated("false && \"not supported number of mChannels\"", __FILE__, __LINE__,
                             "void tarvos::core::cvdata::Image::setNofChannels("
                             "tarvos::core::cvdata::Image::ColorChannels)");
    }
}

void Image::setChannels(ColorChannels channels) {
    mDescription.channels = channels;
    setNofChannels(channels);
}

void Image::updateOpencvHeader() {
    const DepthCode* depth = findDepth(&DepthCode::bits, mDescription.bits);
    if (depth == nullptr)
        TARVOS_REQUIRE(0 && "Image: This depth is not implemented!");
    TARVOS_REQUIRE((mDescription.isPossible() && mDescription.reach() <= std::int64_t{mImageSize}) &&
                   "Image: the description does not fit the buffer.");
    try {
        IplImage header;  // made apart, so that an error leaves the image's own as it was
        cvInitImageHeader(&header, cvSize(mDescription.width, mDescription.height), depth->opencvDepth,
                          mDescription.nofChannels, IPL_ORIGIN_TL, DEFAULT_ALIGN);
        cvSetData(&header, mImageBuffer.get(), static_cast<int>(mDescription.widthStep));
        if (mIplImage == nullptr)
            mIplImage.reset(cvCreateImageHeader(cvSize(0, 0), depth->opencvDepth, mDescription.nofChannels));
        else
            cvResetImageROI(mIplImage.get());
        *mIplImage = header;
    } catch (const cv::Exception& error) {
        if (error.code == cv::Error::StsNoMem)
            throw std::bad_alloc();
        throw;
    }
}

void Image::updateFromOpencvHeader(const IplImage* image) {
    TARVOS_REQUIRE((image != NULL) && "Image: there is no header to read.");
    const DepthCode* depth = findDepth(&DepthCode::opencvDepth, image->depth);
    if (depth == nullptr)
        TARVOS_REQUIRE(0 && "Image: This depth is not implemented!");

    ColorChannels channels = mDescription.channels;
    const char* sequence = image->channelSeq;
    if (image->nChannels == 1) {
        channels = CHANNELS_GRAY;
    } else if (image->nChannels == 3) {
        if (sequence[0] == 'B' && sequence[1] == 'G')
            channels = CHANNELS_BGR;
        else if (sequence[0] == 'R')
            channels = CHANNELS_RGB;
    } else if (image->nChannels == 4) {
        channels = sequence[0] == 'B' && sequence[1] == 'G' && sequence[2] == 'R' ? CHANNELS_BGRA : CHANNELS_RGBA;
    }
    setChannels(channels);
    mDescription.width = image->width;
    mDescription.height = image->height;
    mDescription.bits = depth->bits;
    mDescription.align = image->align;
    mDescription.widthStep = image->widthStep;
}

void Image::resizeMemory(int width, int height) {
    Description wanted = mDescription;
    wanted.width = width;
    wanted.height = height;
    Image resized(wanted.laidOutByRule());
    swapPixels(resized);
}

/// Allocates the rows that the description lays out.
void Image::allocate() {
    if (!mDescription.isPossible())
        throw std::bad_array_new_length();
    const std::int64_t size = mDescription.widthStep * mDescription.height;
    mImageBuffer.reset(new unsigned char[static_cast<std::size_t>(size)]);
    mImageSize = static_cast<std::uint32_t>(size);
}

/// Makes this image, which is new, from a header with pixels, @p readable bytes of them.
void Image::copyFromHeader(const IplImage* image, std::int64_t readable) {
    mDescription.channels = CHANNELS_BGR;  // for a header that tells no known order
    updateFromOpencvHeader(image);
    // OpenCV rejects a stride that is too short, except for an image of one row.
    if (mDescription.isPossible() && mDescription.widthStep < mDescription.bytesPerRow())
        CV_Error(cv::Error::BadStep, "The row stride is shorter than a row");
    allocate();
    updateOpencvHeader();
    copyRows(reinterpret_cast<const unsigned char*>(image->imageData), mDescription.widthStep, readable);
}

/// Copies the rows of an image of this one's size and depth: every byte of the buffer, @p readable ones, where the
/// strides are the same. What then is left of this buffer becomes 0, also what it holds beyond the description.
void Image::copyRows(const unsigned char* source, std::int64_t sourceStep, std::int64_t readable) {
    unsigned char* next = mImageBuffer.get();  // behind what is written
    const unsigned char* end = next + mImageSize;
    const auto zeroTo = [&](const unsigned char* place) {
        std::memset(next, 0, static_cast<std::size_t>(place - next));
    };
    if (sourceStep == mDescription.widthStep) {
        const std::int64_t count = std::min(readable, std::int64_t{mImageSize});
        std::memcpy(next, source, static_cast<std::size_t>(count));
        next += count;
    } else {
        const std::int64_t rowBytes = mDescription.bytesPerRow();
        for (int row = 0; row < mDescription.height; ++row) {
            unsigned char* target = mImageBuffer.get() + row * mDescription.widthStep;
            zeroTo(target);
            std::memcpy(target, source + row * sourceStep, static_cast<std::size_t>(rowBytes));
            next = target + rowBytes;
        }
    }
    zeroTo(end);
}

/// Whether the description and the header tell of the buffer.
bool Image::isInStep() const {
    const DepthCode* depth = findDepth(&DepthCode::bits, mDescription.bits);
    return mIplImage != nullptr && mIplImage->imageData == reinterpret_cast<const char*>(mImageBuffer.get()) &&
           mIplImage->width == mDescription.width && mIplImage->height == mDescription.height &&
           mIplImage->nChannels == mDescription.nofChannels && depth != nullptr &&
           mIplImage->depth == depth->opencvDepth && mDescription.isPossible() &&
           (mDescription.bytesPerRow() <= mDescription.widthStep || mDescription.height == 1) &&
           mDescription.reach() <= std::int64_t{mImageSize};
}

/// Whether the buffer holds what @p wanted describes, and the description and the header tell just that.
bool Image::isLaidOut(const Description& wanted) const {
    return mDescription == wanted && isInStep() && wanted.widthStep * wanted.height <= std::int64_t{mImageSize};
}

void Image::swapPixels(Image& other) noexcept {
    std::swap(mImageSize, other.mImageSize);
    std::swap(mImageBuffer, other.mImageBuffer);
    std::swap(mDescription, other.mDescription);
    if (mIplImage != nullptr && other.mIplImage != nullptr)
        std::swap(*mIplImage, *other.mIplImage);
    else
        std::swap(mIplImage, other.mIplImage);
}

}  // namespace tarvos::core::cvdata
