#include <opencv2/core/core_c.h>
#include <tarvos/core/Contract.h>
#include <tarvos/core/Report.h>
#include <tarvos/core/cvdata/Image.h>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/core/imagefiles/ImageFiles.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <iostream>
#include <new>
#include <tuple>

namespace tarvos::core::cvdata {

namespace {

constexpr Image::BitsPerChannel DEPTHS[] = {Image::BITS_8U, Image::BITS_16U, Image::BITS_32F, Image::BITS_64F,
                                            Image::BITS_8S, Image::BITS_16S, Image::BITS_32S};

/// OpenCV's depth code: the number of bits and a flag for signed integers.
int toOpencvDepth(Image::BitsPerChannel bits) {
    return bits < 0 ? static_cast<int>(IPL_DEPTH_SIGN | static_cast<unsigned int>(-bits)) : bits;
}

}  // namespace

std::int64_t Image::Description::bytesPerRow() const {
    return std::int64_t{width} * nofChannels * std::abs(bits) / 8;
}

/// OpenCV describes a single row without padding, whatever the stride.
std::int64_t Image::Description::bytesSpanned() const {
    return height == 1 ? bytesPerRow() : widthStep * height;
}

/// The padding is counted in channel values, not in bytes: rows of more than 8 bits a value need not end on a multiple
/// of the alignment.
Image::Description Image::Description::withComputedStride() const {
    const std::int64_t values = std::int64_t{width} * nofChannels;
    Description computed = *this;
    computed.widthStep = bytesPerRow() + (align > 0 ? (align - values % align) % align : 0);
    return computed;
}

bool Image::Description::fitsHeader() const {
    return width >= 0 && height >= 0 && widthStep >= 0 && widthStep <= INT_MAX && widthStep * height <= INT_MAX;
}

void Image::HeaderRelease::operator()(IplImage* header) const noexcept {
    cvResetImageROI(header);
    delete header;
}

Image::Image(int width, int height, ColorChannels channels, BitsPerChannel bits) : TimedData(REPR_IMAGE) {
    setChannels(channels);
    mDescription.bits = bits;
    resizeMemory(width, height);
}

Image::Image(const Description& description) : TimedData(REPR_IMAGE), mDescription(description) {
    if (!description.fitsHeader())
        throw std::bad_array_new_length();
    mImageSize = static_cast<std::uint32_t>(description.widthStep * description.height);
    mImageBuffer.reset(new unsigned char[mImageSize]);
    updateOpencvHeader();
}

Image::Image(const IplImage* image) : TimedData(REPR_IMAGE) {
    TARVOS_REQUIRE((image != NULL) && "Image: there is no header to copy.");
    TARVOS_REQUIRE((image->nChannels == 1) || (image->nChannels == 3) || (image->nChannels == 4));
    TARVOS_REQUIRE((image->imageData != NULL || image->widthStep == 0 || image->height == 0) &&
                   "Image: the header has no pixels.");
    copyFromHeader(image);
}

Image::Image(std::string path) : TimedData(REPR_IMAGE) {
    const cv::Mat pixels = imagefiles::read(path);
    Description loaded;
    loaded.width = pixels.cols;
    loaded.height = pixels.rows;
    loaded.channels = CHANNELS_BGR;
    loaded = loaded.withComputedStride();
    if (pixels.empty() || !loaded.fitsHeader()) {
        report(std::cerr, "ERROR: Could not load image: " + path);
        return;
    }
    Image rows(loaded);
    const auto step = static_cast<std::int64_t>(pixels.step[0]);
    rows.copyRows(pixels.data, step, step * loaded.height);
    swapPixels(rows);
}

Image::Image(const Image& image) : TimedData(REPR_IMAGE) {
    TARVOS_REQUIRE(CV_IS_IMAGE(image.iplImage()) &&
                   "Source image doesn't exist, can't use the copy constructor 'cvdata::Image(const Image& image)'.");
    TARVOS_REQUIRE((image.iplImage()->nChannels == 1) || (image.iplImage()->nChannels == 3) ||
                   (image.iplImage()->nChannels == 4));
    TARVOS_REQUIRE(image.isHeaderInBuffer() && "Image: the source's description and its pixels are out of step.");
    copyFromHeader(image.iplImage());
    copyLastPadding(image);
}

Image* Image::clone() const {
    TARVOS_REQUIRE(isHeaderInBuffer() && "Image: the source's description and its pixels are out of step.");
    auto copy = std::make_unique<Image>(iplImage());
    copy->copyLastPadding(*this);
    return copy.release();
}

Image& Image::operator=(const Image& image) {
    if (this == &image)
        return *this;
    TARVOS_REQUIRE(image.isInBuffer() && "Image: the source's description and its pixels are out of step.");
    const Description wanted = image.mDescription.withComputedStride();
    const auto geometry = [](const Description& d) { return std::tie(d.width, d.height, d.channels, d.bits, d.align); };
    if (geometry(mDescription) != geometry(wanted) || wanted.widthStep * wanted.height > std::int64_t{mImageSize}) {
        Image fresh(wanted);
        swapPixels(fresh);
    } else {
        mDescription = wanted;
        if (mIplImage != nullptr && !headerMatchesDescription())
            updateOpencvHeader();
    }
    copyRows(image.imageBuffer(), image.mDescription.widthStep, std::int64_t{image.mImageSize});
    return *this;
}

unsigned char* Image::row(int y) const {
    TARVOS_REQUIRE_WITH("(row " + std::to_string(y) + " of " + std::to_string(height()) + ")",
                        (y >= 0 && y < height() && isInBuffer()) && "Image: there is no such row.");
    return imageBuffer() + y * mDescription.widthStep;
}

bool Image::save(std::string path) const {
    const bool redFirst = mDescription.channels == CHANNELS_RGB || mDescription.channels == CHANNELS_RGBA;
    const std::string reason = empty() ? "the image is empty" : imagefiles::write(path, matCopy(*this), redFirst);
    if (!reason.empty())
        report(std::cerr, "ERROR: Could not save image: " + path + ": " + reason);
    return reason.empty();
}

void Image::setNofChannels(ColorChannels channels) {
    static constexpr std::int32_t COUNTS[] = {1, 3, 3, 4, 4, 3};  // by enumerator
    if (channels < CHANNELS_GRAY || channels > CHANNELS_OTHER_3)
        // GCC's __PRETTY_FUNCTION__ would leave out the class of the nested enumeration.
        contractViolated("false && \"not supported number of mChannels\"", __FILE__, __LINE__,
                         "void tarvos::core::cvdata::Image::setNofChannels("
                         "tarvos::core::cvdata::Image::ColorChannels)");
    mDescription.nofChannels = COUNTS[channels];
}

void Image::setChannels(ColorChannels channels) {
    mDescription.channels = channels;
    setNofChannels(channels);
}

void Image::updateOpencvHeader() {
    if (std::find(std::begin(DEPTHS), std::end(DEPTHS), mDescription.bits) == std::end(DEPTHS))
        TARVOS_REQUIRE(0 && "Image: This depth is not implemented!");
    TARVOS_REQUIRE((mDescription.fitsHeader() && mDescription.bytesSpanned() <= std::int64_t{mImageSize}) &&
                   "Image: the description does not fit the buffer.");
    IplImage header;  // made apart, so that an error leaves the image's own unchanged
    cvInitImageHeader(&header, cvSize(width(), height()), toOpencvDepth(bitsPerChannel()), mDescription.nofChannels);
    cvSetData(&header, mImageBuffer.get(), widthStep());
    if (mIplImage == nullptr)
        mIplImage.reset(new IplImage());
    cvResetImageROI(mIplImage.get());
    *mIplImage = header;
}

void Image::updateFromOpencvHeader(const IplImage* image) {
    TARVOS_REQUIRE((image != NULL) && "Image: there is no header to read.");
    const auto* bits = std::find_if(std::begin(DEPTHS), std::end(DEPTHS),
                                    [&](BitsPerChannel depth) { return toOpencvDepth(depth) == image->depth; });
    if (bits == std::end(DEPTHS))
        TARVOS_REQUIRE(0 && "Image: This depth is not implemented!");

    ColorChannels channels = mDescription.channels;
    const char* sequence = image->channelSeq;
    const bool startsWithBlueGreen = sequence[0] == 'B' && sequence[1] == 'G';
    if (image->nChannels == 1)
        channels = CHANNELS_GRAY;
    else if (image->nChannels == 3 && startsWithBlueGreen)
        channels = CHANNELS_BGR;
    else if (image->nChannels == 3 && sequence[0] == 'R')
        channels = CHANNELS_RGB;
    else if (image->nChannels == 4)
        channels = startsWithBlueGreen && sequence[2] == 'R' ? CHANNELS_BGRA : CHANNELS_RGBA;
    setChannels(channels);
    mDescription.width = image->width;
    mDescription.height = image->height;
    mDescription.bits = *bits;
    mDescription.align = image->align;
    mDescription.widthStep = image->widthStep;
}

void Image::resizeMemory(int width, int height) {
    Description wanted = mDescription;
    wanted.width = width;
    wanted.height = height;
    Image resized(wanted.withComputedStride());
    swapPixels(resized);
}

/// Makes this image, which is new, from a header with pixels.
void Image::copyFromHeader(const IplImage* image) {
    mDescription.channels = CHANNELS_BGR;  // for a header with an unknown channel order
    updateFromOpencvHeader(image);
    const std::int64_t step = mDescription.widthStep;
    const std::int64_t padding = step - mDescription.bytesPerRow();
    // OpenCV rejects a stride that is too short, except for an image of one row.
    if (mDescription.fitsHeader() && padding < 0)
        CV_Error(cv::Error::BadStep, "The row stride is shorter than a row");
    // The padding of a part's last row is its parent's. A part is known by a stride that OpenCV would not give.
    const std::int64_t align = std::max(mDescription.align, 1);
    const bool isWhole = step == (mDescription.bytesPerRow() + align - 1) / align * align;
    Image copy(mDescription);
    copy.copyRows(reinterpret_cast<const unsigned char*>(image->imageData), step,
                  step * mDescription.height - (isWhole ? 0 : padding));
    swapPixels(copy);
}

/// Where the header of @p image is over its own buffer, the padding of the last row is its own, whatever the stride.
void Image::copyLastPadding(const Image& image) {
    const std::int64_t padding = mDescription.widthStep - mDescription.bytesPerRow();
    const std::int64_t start = mDescription.widthStep * height() - padding;
    if (height() > 0 && image.iplImage()->imageData == reinterpret_cast<const char*>(image.imageBuffer()))
        std::copy_n(image.imageBuffer() + start, padding, imageBuffer() + start);
}

/// False where the header's fields were changed so that it exceeds the buffer.
bool Image::isHeaderInBuffer() const {
    const IplImage* header = iplImage();
    return header == nullptr || header->imageData != reinterpret_cast<const char*>(imageBuffer()) ||
           std::int64_t{header->widthStep} * header->height <= std::int64_t{mImageSize};
}

/// Copies the rows at @p source, where @p readable bytes may be read: every byte if the strides are equal, otherwise
/// the pixels. The rest of the rows becomes 0.
void Image::copyRows(const unsigned char* source, std::int64_t sourceStep, std::int64_t readable) {
    const std::int64_t step = mDescription.widthStep;
    const std::int64_t size = step * mDescription.height;
    const auto copy = [](const unsigned char* from, std::int64_t count, unsigned char* to, std::int64_t room) {
        std::fill(std::copy_n(from, count, to), to + room, static_cast<unsigned char>(0));
    };
    if (sourceStep == step)
        copy(source, std::clamp(readable, std::int64_t{0}, size), imageBuffer(), size);
    else
        for (std::int64_t row = 0; row < mDescription.height; ++row)
            copy(source + row * sourceStep, mDescription.bytesPerRow(), imageBuffer() + row * step, step);
}

/// Whether the rows lie in the buffer and do not overlap, as they may after the description alone was changed.
bool Image::isInBuffer() const {
    return mDescription.fitsHeader() && mDescription.bytesSpanned() <= std::int64_t{mImageSize} &&
           (mDescription.height <= 1 || mDescription.bytesPerRow() <= mDescription.widthStep);
}

bool Image::headerMatchesDescription() const {
    return mIplImage->imageData == reinterpret_cast<const char*>(imageBuffer()) && mIplImage->width == width() &&
           mIplImage->height == height() && mIplImage->nChannels == mDescription.nofChannels &&
           mIplImage->depth == toOpencvDepth(bitsPerChannel()) &&
           std::int64_t{mIplImage->widthStep} * height() == mDescription.bytesSpanned();
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
