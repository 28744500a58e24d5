#pragma once

#include "core/cvdata/TimedData.h"

#include <opencv2/core/types_c.h>

#include <cstdint>
#include <memory>
#include <string>

namespace tarvos::core::cvdata {

/// An image that owns its pixels and keeps an OpenCV header over them.
///
/// OpenCV's C functions take iplImage() and work on the image's own pixels, in place;
/// `cv::cvarrToMat(image.iplImage())` is a `cv::Mat` view of them for the C++ functions. imageBuffer() is the raw
/// access. An image never adopts memory: building one from an OpenCV header, a file or another image copies the
/// pixels.
///
/// The pixels lie in one buffer, rows widthStep apart, the channel values of a pixel side by side. In an image made
/// from a size a row is `width * channels * bytes per value` bytes, plus `(4 - width * channels mod 4) mod 4` bytes
/// of fill; an image made from a header or a copy takes the header's stride.
///
/// Class invariant: an image is empty (no buffer, no header, 0 x 0), or row stride x rows = bytes allocated and the
/// header describes the buffer as the accessors do. Of the operations under "Maintenance", setChannels,
/// setNofChannels and updateFromOpencvHeader change the description alone; call resizeMemory or updateOpencvHeader
/// next. Until then assigning from the image stops the process, and no operation leaves the buffer.
///
/// Sizes that no image can have (a negative width or height, or more than 2^31 - 1 bytes, the most an OpenCV header
/// counts) throw `std::bad_alloc` or a class derived from it. When an operation throws, its target is as it was.
///
/// @code
/// Image image("hand.png");
/// if (image.imageBuffer() == nullptr)
///     return 1;                                          // standard error tells why
/// cvNot(image.iplImage(), image.iplImage());             // OpenCV, C
/// cv::Mat view = cv::cvarrToMat(image.iplImage());       // OpenCV, C++; nothing is copied
/// image.imageBuffer()[0] = 255;                          // the first pixel's blue, in all three
/// @endcode
/// @ingroup images
class TARVOS_CORE_EXPORT Image : public TimedData {
public:
    /// The order of the channels within a pixel.
    enum ColorChannels {
        CHANNELS_GRAY = 0,    ///< one channel
        CHANNELS_BGR = 1,     ///< blue, green, red: OpenCV's order
        CHANNELS_RGB = 2,     ///< red, green, blue
        CHANNELS_RGBA = 3,    ///< four channels that do not start blue, green, red
        CHANNELS_BGRA = 4,    ///< blue, green, red and a fourth
        CHANNELS_OTHER_3 = 5  ///< another three-channel layout; no OpenCV header is read as this one
    };

    /// Bits of one channel value; negative for signed integers, F for floating point.
    enum BitsPerChannel {
        BITS_8U = 8,
        BITS_16U = 16,
        BITS_32F = 32,
        BITS_64F = 64,
        BITS_8S = -8,
        BITS_16S = -16,
        BITS_32S = -32
    };

    /// An empty image: 0 x 0, CHANNELS_RGB, BITS_8U, neither buffer nor header.
    Image() noexcept;
    /// An image of @p width x @p height pixels that are not initialised. Stops the process when @p channels or @p
    /// bits is no enumerator.
    Image(int width, int height, ColorChannels channels, BitsPerChannel bits);
    /// A copy of the pixels that @p image describes, with its stride and alignment. Region of interest and origin are
    /// not looked at. Three channels in an order other than "BGR" or "R.." are taken as CHANNELS_BGR. Only pixels are
    /// read, not the bytes that fill up the last row, so the header may be a view into a larger image.
    ///
    /// Stops the process when @p image or its data is null, or it has not 1, 3 or 4 channels or a depth outside
    /// BitsPerChannel. Throws `cv::Exception` for a stride shorter than a row.
    explicit Image(const IplImage* image);
    /// The image in the file at @p path, as OpenCV's imread decodes it to 8-bit CHANNELS_BGR, without regard to an EXIF
    /// orientation. When that fails for whatever reason, the image is empty and "ERROR: Could not load image: " and the
    /// path are written to standard error. What the decoder itself says there about a file that fails is dropped: the
    /// process's standard error is held back while the file is decoded.
    explicit Image(std::string path);
    /// A copy of the pixels of @p image, described by its OpenCV header: the layout is what the header's channel
    /// sequence says (OpenCV knows "BGR" and "BGRA", so CHANNELS_RGB becomes CHANNELS_BGR), the time stamp is 0.
    /// Stops the process when @p image is empty.
    Image(const Image& image);
    /// The image @p image was, its time stamp, buffer and header included; @p image becomes empty.
    Image(Image&& image) noexcept;
    ~Image() override;

    /// A new image made from this image's header, owned by the caller; see `Image(const Image&)`. Stops the process
    /// when this image is empty.
    virtual Image* clone() const;

    /// Channels of a pixel: 1, 3 or 4.
    virtual int nofChannels() const { return mNofChannels; }

    /// Copies pixels, size, layout, depth and alignment; the time stamp stays. The buffer is kept when the geometry
    /// is the same and a new one would be as large, so that frames of one size are copied without an allocation. The
    /// stride becomes that of an image made from a size. Assigning an empty image makes this one empty.
    Image& operator=(const Image& image);
    /// Takes over the pixels, which @p image then lacks: it becomes empty. The time stamp stays, as in a copy.
    Image& operator=(Image&& image) noexcept;

    /// Width in pixels.
    int width() const noexcept { return mWidth; }
    /// Height in pixels.
    int height() const noexcept { return mHeight; }
    /// Layout of the channels.
    ColorChannels channels() const noexcept { return mChannels; }
    /// Depth of a channel.
    BitsPerChannel bitsPerChannel() const noexcept { return mBitsPerChannel; }
    /// The first pixel of the first row; null in an empty image. Changes only where the image is given another size.
    unsigned char* imageBuffer() const noexcept { return mImageBuffer.get(); }
    /// The OpenCV header over the buffer, owned by the image; null in an empty image. Its row stride is `widthStep`:
    /// for an image of one row, OpenCV states the row without its fill.
    IplImage* iplImage() const noexcept { return mIplImage.get(); }

    /// @name Maintenance
    /// @{

    /// Sets the number of channels that @p channels implies, but not the layout. Stops the process when @p channels
    /// is no enumerator.
    void setNofChannels(ColorChannels channels);
    /// Sets the layout and the number of channels, for instance after a conversion in place from BGR to RGB.
    void setChannels(ColorChannels channels);
    /// Makes the header describe the buffer as the fields do, without a region of interest. Stops the process when
    /// the fields describe more or less than the buffer.
    void updateOpencvHeader();
    /// Takes size, layout, depth, alignment and stride from @p image, but no pixels. An unknown channel order or
    /// count leaves the layout as it was. Stops the process when @p image is null or its depth is outside
    /// BitsPerChannel.
    void updateFromOpencvHeader(const IplImage* image);
    /// Gives the image a new buffer for the new size, not initialised, also when the size stays.
    void resizeMemory(int width, int height);

    /// @}

private:
    struct HeaderRelease {
        void operator()(IplImage* header) const noexcept;
    };

    std::uint32_t mImageSize = 0;
    std::unique_ptr<unsigned char[]> mImageBuffer;
    std::int32_t mWidthStep = 0;
    std::int32_t mBufferRows = 0;
    int mWidth = 0;
    int mHeight = 0;
    ColorChannels mChannels = CHANNELS_RGB;
    std::int32_t mNofChannels = 3;
    BitsPerChannel mBitsPerChannel = BITS_8U;
    std::int32_t mAlign = 4;
    std::unique_ptr<IplImage, HeaderRelease> mIplImage;

    void allocate();
    void copyPixelsOf(const IplImage* image);
    void copyRows(const unsigned char* source, std::int32_t sourceStep);
    std::int64_t bytesPerRow() const;
    bool fitsBuffer() const;
    bool isInStep() const;

protected:
    /// Exchanges everything but the time stamps. Each image keeps its header object where both have one, so that a
    /// pointer taken from iplImage() stays good.
    void swapPixels(Image& other) noexcept;

    // The root's assignment is meant for callers who hold a CvData&; here it would only hide a mistake.
    using TimedData::operator=;
};

}  // namespace tarvos::core::cvdata
