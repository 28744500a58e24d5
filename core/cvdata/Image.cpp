#include "core/cvdata/Image.h"

#include "core/Contract.h"
#include "core/cvdata/ImageLoader.h"

#include <opencv2/core/core_c.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <limits>
#include <new>
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

/// The fill is counted in channel values, not in bytes: rows of more than 8 bits a value need not end on a multiple
/// of the alignment.
std::int32_t alignedWidthStep(int width, int nofChannels, int bits, std::int32_t align) {
    if (width < 0)
        throw std::bad_array_new_length();
    const std::int64_t values = std::int64_t{width} * nofChannels;
    const std::int64_t fill = align > 0 ? (align - values % align) % align : 0;
    const std::int64_t step = std::abs(bits) * values / 8 + fill;
    if (step > MAX_INT)
        throw std::bad_array_new_length();
    return static_cast<std::int32_t>(step);
}

}  // namespace

void Image::HeaderRelease::operator()(IplImage* header) const noexcept {
    cvReleaseImageHeader(&header);
}

Image::Image() noexcept : TimedData(REPR_IMAGE) {}

Image::Image(int width, int height, ColorChannels channels, BitsPerChannel bits) : TimedData(REPR_IMAGE) {
    setChannels(channels);
    mBitsPerChannel = bits;
    resizeMemory(width, height);
}

Image::Image(const IplImage* image) : TimedData(REPR_IMAGE), mChannels(CHANNELS_BGR) {
    TARVOS_REQUIRE((image != NULL) && "Image: there is no header to copy.");
    TARVOS_REQUIRE((image->nChannels == 1) || (image->nChannels == 3) || (image->nChannels == 4));
    updateFromOpencvHeader(image);
    copyPixelsOf(image);
}

Image::Image(std::string path) : TimedData(REPR_IMAGE) {
    const cv::Mat loaded = loadColourImage(path);
    if (loaded.empty()) {
        std::cerr << "ERROR: Could not load image: " << path << std::endl;
        return;
    }
    setChannels(CHANNELS_BGR);
    resizeMemory(loaded.cols, loaded.rows);
    copyRows(loaded.data, static_cast<std::int32_t>(loaded.step[0]));
}

Image::Image(const Image& image) : TimedData(REPR_IMAGE), mChannels(CHANNELS_BGR) {
    TARVOS_REQUIRE(CV_IS_IMAGE(image.iplImage()) &&
                   "Source image doesn't exist, can't use the copy constructor 'cvdata::Image(const Image& image)'.");
    TARVOS_REQUIRE((image.iplImage()->nChannels == 1) || (image.iplImage()->nChannels == 3) ||
                   (image.iplImage()->nChannels == 4));
    updateFromOpencvHeader(image.iplImage());
    copyPixelsOf(image.iplImage());
}

Image::Image(Image&& image) noexcept : TimedData(image) {
    swapPixels(image);
}

Image::~Image() = default;

Image* Image::clone() const {
    TARVOS_REQUIRE((iplImage() != NULL) && "Image: an empty image cannot be cloned.");
    return new Image(iplImage());
}

Image& Image::operator=(const Image& image) {
    if (this == &image)
        return *this;
    if (image.mImageBuffer == nullptr) {
        Image empty;
        swapPixels(empty);
        return *this;
    }
    TARVOS_REQUIRE(image.isInStep() && "Image: the source's description and its pixels are out of step.");

    const bool sameGeometry = mAlign == image.mAlign && mBitsPerChannel == image.mBitsPerChannel &&
                              mChannels == image.mChannels && mNofChannels == image.mNofChannels &&
                              mWidth == image.mWidth && mHeight == image.mHeight;
    const std::int32_t step = alignedWidthStep(image.mWidth, image.mNofChannels, image.mBitsPerChannel, image.mAlign);
    // Equal geometry does not mean equal strides: a stride that came with an OpenCV header may be any.
    if (!sameGeometry || mWidthStep != step || !isInStep()) {
        Image resized;
        resized.mChannels = image.mChannels;
        resized.mNofChannels = image.mNofChannels;
        resized.mBitsPerChannel = image.mBitsPerChannel;
        resized.mAlign = image.mAlign;
        resized.resizeMemory(image.mWidth, image.mHeight);
        swapPixels(resized);
    }
    copyRows(image.mImageBuffer.get(), image.mWidthStep);
    return *this;
}

Image& Image::operator=(Image&& image) noexcept {
    Image taken;
    taken.swapPixels(image);
    swapPixels(taken);
    return *this;
}

void Image::setNofChannels(ColorChannels channels) {
    switch (channels) {
        case CHANNELS_GRAY:
            mNofChannels = 1;
            break;
        case CHANNELS_BGR:
        case CHANNELS_RGB:
        case CHANNELS_OTHER_3:
            mNofChannels = 3;
            break;
        case CHANNELS_RGBA:
        case CHANNELS_BGRA:
            mNofChannels = 4;
            break;
        default:
            // GCC's __PRETTY_FUNCTION__ would leave out the class of the nested enumeration.
            contractViolated("false && \"not supported number of mChannels\"", __FILE__, __LINE__,
                             "void tarvos::core::cvdata::Image::setNofChannels("
                             "tarvos::core::cvdata::Image::ColorChannels)");
    }
}

void Image::setChannels(ColorChannels channels) {
    mChannels = channels;
    setNofChannels(mChannels);
}

void Image::updateOpencvHeader() {
    const DepthCode* depth = findDepth(&DepthCode::bits, mBitsPerChannel);
    if (depth == nullptr)
        TARVOS_REQUIRE(0 && "Image: This depth is not implemented!");
    TARVOS_REQUIRE(fitsBuffer() && "Image: the description does not fit the buffer.");

    if (mIplImage == nullptr) {
        mIplImage.reset(cvCreateImageHeader(cvSize(mWidth, mHeight), depth->opencvDepth, mNofChannels));
    } else {
        cvResetImageROI(mIplImage.get());
        cvInitImageHeader(mIplImage.get(), cvSize(mWidth, mHeight), depth->opencvDepth, mNofChannels, IPL_ORIGIN_TL,
                          DEFAULT_ALIGN);
    }
    cvSetData(mIplImage.get(), mImageBuffer.get(), mWidthStep);
}

void Image::updateFromOpencvHeader(const IplImage* image) {
    TARVOS_REQUIRE((image != NULL) && "Image: there is no header to read.");
    const DepthCode* depth = findDepth(&DepthCode::opencvDepth, image->depth);
    if (depth == nullptr)
        TARVOS_REQUIRE(0 && "Image: This depth is not implemented!");

    mWidth = image->width;
    mHeight = image->height;
    const char* sequence = image->channelSeq;
    if (image->nChannels == 1) {
        mChannels = CHANNELS_GRAY;
    } else if (image->nChannels == 3) {
        if (sequence[0] == 'B' && sequence[1] == 'G')
            mChannels = CHANNELS_BGR;
        else if (sequence[0] == 'R')
            mChannels = CHANNELS_RGB;
    } else if (image->nChannels == 4) {
        mChannels = sequence[0] == 'B' && sequence[1] == 'G' && sequence[2] == 'R' ? CHANNELS_BGRA : CHANNELS_RGBA;
    }
    setNofChannels(mChannels);
    mBitsPerChannel = depth->bits;
    mAlign = image->align;
    mWidthStep = image->widthStep;
    mBufferRows = mHeight;
}

void Image::resizeMemory(int width, int height) {
    Image resized;
    resized.mWidth = width;
    resized.mHeight = height;
    resized.mChannels = mChannels;
    resized.mNofChannels = mNofChannels;
    resized.mBitsPerChannel = mBitsPerChannel;
    resized.mAlign = mAlign;
    resized.mWidthStep = alignedWidthStep(width, mNofChannels, mBitsPerChannel, mAlign);
    resized.allocate();
    resized.updateOpencvHeader();
    swapPixels(resized);
}

/// Allocates the rows that the fields describe.
void Image::allocate() {
    const std::int64_t size = std::int64_t{mWidthStep} * mHeight;
    if (mWidth < 0 || mHeight < 0 || size > MAX_INT)
        throw std::bad_array_new_length();
    mImageBuffer.reset(new unsigned char[static_cast<std::size_t>(size)]);
    mImageSize = static_cast<std::uint32_t>(size);
    mBufferRows = mHeight;
}

/// The second half of making an image from a header that the fields already describe.
void Image::copyPixelsOf(const IplImage* image) {
    TARVOS_REQUIRE((image->imageData != NULL) && "Image: the header has no pixels.");
    // OpenCV rejects a stride that is too short, except for an image of one row.
    if (mWidthStep < bytesPerRow())
        CV_Error(cv::Error::BadStep, "The row stride is shorter than a row");
    allocate();
    copyRows(reinterpret_cast<const unsigned char*>(image->imageData), mWidthStep);
    updateOpencvHeader();
}

/// Copies pixels and leaves alone, in source and target, what fills up the last row: in a view into a larger image
/// those bytes may lie outside the allocation.
void Image::copyRows(const unsigned char* source, std::int32_t sourceStep) {
    if (mHeight == 0)
        return;
    const auto rowBytes = static_cast<std::size_t>(bytesPerRow());
    if (sourceStep == mWidthStep) {
        std::memcpy(mImageBuffer.get(), source, mImageSize - static_cast<std::size_t>(mWidthStep) + rowBytes);
        return;
    }
    for (std::ptrdiff_t row = 0; row < mHeight; ++row)
        std::memcpy(mImageBuffer.get() + row * mWidthStep, source + row * sourceStep, rowBytes);
}

std::int64_t Image::bytesPerRow() const {
    return std::int64_t{mWidth} * mNofChannels * std::abs(mBitsPerChannel) / 8;
}

bool Image::fitsBuffer() const {
    return bytesPerRow() <= mWidthStep && mHeight == mBufferRows &&
           std::int64_t{mWidthStep} * mBufferRows == std::int64_t{mImageSize};
}

/// Whether the fields and the header describe the buffer.
bool Image::isInStep() const {
    const DepthCode* depth = findDepth(&DepthCode::bits, mBitsPerChannel);
    return mIplImage != nullptr && mIplImage->imageData == reinterpret_cast<const char*>(mImageBuffer.get()) &&
           mIplImage->width == mWidth && mIplImage->height == mHeight && mIplImage->nChannels == mNofChannels &&
           depth != nullptr && mIplImage->depth == depth->opencvDepth && fitsBuffer();
}

void Image::swapPixels(Image& other) noexcept {
    std::swap(mImageSize, other.mImageSize);
    std::swap(mImageBuffer, other.mImageBuffer);
    std::swap(mWidthStep, other.mWidthStep);
    std::swap(mBufferRows, other.mBufferRows);
    std::swap(mWidth, other.mWidth);
    std::swap(mHeight, other.mHeight);
    std::swap(mChannels, other.mChannels);
    std::swap(mNofChannels, other.mNofChannels);
    std::swap(mBitsPerChannel, other.mBitsPerChannel);
    std::swap(mAlign, other.mAlign);
    if (mIplImage != nullptr && other.mIplImage != nullptr)
        std::swap(*mIplImage, *other.mIplImage);
    else
        std::swap(mIplImage, other.mIplImage);
}

}  // namespace tarvos::core::cvdata
