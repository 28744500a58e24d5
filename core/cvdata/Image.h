#pragma once

#include <opencv2/core/types_c.h>
#include <tarvos/core/cvdata/TimedData.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

namespace tarvos::core::cvdata {

/// An image that owns its pixels and keeps an OpenCV header over them.
///
/// OpenCV's C functions take iplImage() and work on the image's own pixels, in place; `matView(image)` of MatView.h is
/// a `cv::Mat` view of them for the C++ functions. An image never adopts memory of the caller's: it copies pixels.
///
/// The pixels lie in one buffer, rows widthStep() bytes apart, the channel values of a pixel side by side. In an image
/// made from a size or a file, the n = width x channels values of a row are followed by (4 - n mod 4) mod 4 bytes of
/// padding; its alignment is 4, although the header may say 8. An image made from a header, or a copy, has the stride
/// and alignment of the header.
///
/// Class invariant: an image is 0 x 0 without buffer and header, or row stride x rows are at most the bytes allocated
/// and the header describes the buffer as the accessors do. setChannels, setNofChannels and updateFromOpencvHeader
/// change only the description; where size, depth or number of channels change, call resizeMemory (for new pixels) or
/// updateOpencvHeader. Until then, assigning from an image whose description exceeds its buffer aborts, and no
/// operation reads or writes outside the buffer.
///
/// Sizes that no image can have (a negative width or height, or more than 2^31 - 1 bytes, the most an OpenCV header
/// counts) and allocation failures, also in opencv_core, throw `std::bad_alloc` or a class derived from it, and leave
/// the target unchanged. In a codec, an allocation failure may also make the file fail to load, or exit.
///
/// @snippet image.cpp image
/// @ingroup images
class TARVOS_CORE_EXPORT Image : public TimedData {
public:
    /// The order of the channels within a pixel.
    enum ColorChannels {
        CHANNELS_GRAY = 0,    ///< one channel
        CHANNELS_BGR = 1,     ///< blue, green, red: OpenCV's order
        CHANNELS_RGB = 2,     ///< red, green, blue
        CHANNELS_RGBA = 3,    ///< red, green, blue and a fourth; any four channels not marked as BGRA
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

    /// An image of 0 x 0 pixels, CHANNELS_RGB, BITS_8U, with neither buffer nor header.
    Image() noexcept : TimedData(REPR_IMAGE) {}
    /// An image of @p width x @p height pixels that are not initialised. Aborts when @p channels or @p bits
    /// is not a valid enumerator.
    Image(int width, int height, ColorChannels channels, BitsPerChannel bits);
    /// A copy of the pixels that @p image describes, with its stride and alignment. Region of interest and origin are
    /// ignored. A three-channel header whose sequence starts neither with BG nor with R is read as CHANNELS_BGR.
    ///
    /// The last row's padding is copied if the stride is the one that OpenCV would choose; otherwise it is 0,
    /// since the header may describe a part of a larger image. A part that has that stride by chance (101 of
    /// 104 grey columns) looks like a whole image: pass its `cv::Mat` to `imageOf` of MatView.h instead.
    ///
    /// Aborts when @p image is null, when it has rows but no data, when it has not 1, 3 or 4 channels, or when its
    /// depth is outside BitsPerChannel. Throws `cv::Exception` for a stride shorter than a row.
    Image(const IplImage* image);
    /// The image in the file at @p path as `cv::imread` decodes it to 8-bit CHANNELS_BGR, without regard to an EXIF
    /// orientation. If that fails for whatever reason, the image is empty and "ERROR: Could not load image: " and the
    /// path are written to standard error, perhaps after messages of the decoder. What OpenCV can read in part does not
    /// fail: a JPEG that is cut short loads with its rest grey. Only regular files are opened, and no DICOM: OpenCV's
    /// decoder of it exits on a damaged file. Throws nothing but `std::bad_alloc`.
    ///
    /// The first load or save also loads OpenCV's codecs (about 50 ms). Do neither in the destructor of a global
    /// object: OpenCV may be gone by then.
    Image(std::string path);
    /// A copy of the pixels of @p image, described by its OpenCV header: the layout is what the header's channel
    /// sequence says (OpenCV knows "BGR" and "BGRA", so CHANNELS_RGB becomes CHANNELS_BGR), the alignment 4 or 8 as
    /// OpenCV chose it, the time stamp 0. Aborts when @p image has no header, or one that exceeds the buffer.
    Image(const Image& image);
    /// Takes over the buffer, header and time stamp of @p image, which becomes empty.
    Image(Image&& image) noexcept : TimedData(std::move(image)) { swapPixels(image); }

    /// A new image made from this image's header, owned by the caller; see `Image(const IplImage*)`. Aborts when
    /// this image has no header, or one that exceeds the buffer.
    virtual Image* clone() const;

    /// Channels of a pixel: 1, 3 or 4.
    virtual int nofChannels() const { return mDescription.nofChannels; }

    /// Copies pixels, size, layout, depth and alignment; the time stamp and the header object stay. There is no move
    /// assignment. The stride is recomputed with that alignment. Between images of equal size, layout, depth and
    /// alignment the buffer stays if it is large enough, so that frames are copied without an allocation; if this image
    /// has the recomputed stride, its region of interest stays, too. Padding is copied if @p image has that stride.
    Image& operator=(const Image& image);

    /// True for an image without pixels: width() or height() is 0.
    bool empty() const noexcept { return mDescription.width == 0 || mDescription.height == 0; }
    /// Width in pixels.
    int width() const noexcept { return mDescription.width; }
    /// Height in pixels.
    int height() const noexcept { return mDescription.height; }
    /// Layout of the channels.
    ColorChannels channels() const noexcept { return mDescription.channels; }
    /// Depth of a channel.
    BitsPerChannel bitsPerChannel() const noexcept { return mDescription.bits; }
    /// The row stride: bytes from the start of one row to the start of the next.
    int widthStep() const noexcept { return static_cast<int>(mDescription.widthStep); }
    /// The first pixel of the first row; null without a buffer. It stays until resizeMemory(), a move, any assignment
    /// to a TiledImage, or an assignment that changes size, layout, depth or alignment or needs a larger buffer.
    unsigned char* imageBuffer() const noexcept { return mImageBuffer.get(); }
    /// The first pixel of row @p y, counted from 0. Aborts for another row, or unless the buffer holds all.
    unsigned char* row(int y) const;
    /// The OpenCV header over the buffer, owned by the image; null without a buffer. Its row stride is widthStep();
    /// for an image of one row, OpenCV reports the row without padding. Where the stride is not a multiple of a value's
    /// bytes (possible where those are several, and width x channels not a multiple of the alignment), OpenCV silently
    /// computes wrong results on it: read and write `imageData` row by row, or take `matCopy(image)` of MatView.h.
    IplImage* iplImage() const noexcept { return mIplImage.get(); }

    /// Writes the image to the file at @p path in the format of its extension: .png, .jpg, .jpeg, .jpe, .bmp, .dib,
    /// .tif, .tiff, .webp, .pbm, .pgm, .ppm, .pnm, .pxm or .pam. The layout is converted to the file's channel order; a
    /// depth that the format lacks is converted to 8 bits, as OpenCV does. The file is written whole or not at all:
    /// once complete, it replaces a regular file of that name (keeping its permissions), or a link but not its target.
    ///
    /// False, with "ERROR: Could not save image: ", the path and the reason on standard error, if that fails: an empty
    /// image, an unknown extension, channels that the format lacks, a full disk. Throws only `std::bad_alloc`.
    bool save(std::string path) const;

    /// Sets the number of channels that @p channels implies, but not the layout. Aborts when @p channels is
    /// not a valid enumerator.
    void setNofChannels(ColorChannels channels);
    /// Sets the layout and the number of channels, for instance after a conversion in place from BGR to RGB.
    void setChannels(ColorChannels channels);
    /// Makes the header describe the buffer as the accessors do, without a region of interest. Aborts when that
    /// description exceeds the buffer or a size is negative. A stride shorter than a row is OpenCV's `cv::Exception`,
    /// and the header is unchanged.
    void updateOpencvHeader();
    /// Takes size, layout, depth, alignment and stride from @p image, but no pixels. An unknown order of three
    /// channels, or another count, leaves the layout. Aborts for null, and for a depth outside BitsPerChannel.
    void updateFromOpencvHeader(const IplImage* image);
    /// Gives the image a new buffer for the new size, not initialised, even if the size stays the same.
    void resizeMemory(int width, int height);

private:
    /// How the pixels are laid out.
    struct Description {
        int width = 0;
        int height = 0;
        ColorChannels channels = CHANNELS_RGB;
        std::int32_t nofChannels = 3;
        BitsPerChannel bits = BITS_8U;
        std::int32_t align = 4;
        std::int64_t widthStep = 0;

        std::int64_t bytesPerRow() const;
        std::int64_t bytesSpanned() const;
        Description withComputedStride() const;
        bool fitsHeader() const;
    };
    struct HeaderRelease {
        void operator()(IplImage* header) const noexcept;
    };

    std::uint32_t mImageSize = 0;  ///< bytes allocated
    std::unique_ptr<unsigned char[]> mImageBuffer;
    Description mDescription;
    std::unique_ptr<IplImage, HeaderRelease> mIplImage;

    explicit Image(const Description& description);
    void copyFromHeader(const IplImage* image);
    void copyLastPadding(const Image& image);
    bool isHeaderInBuffer() const;
    void copyRows(const unsigned char* source, std::int64_t sourceStep, std::int64_t readable);
    bool isInBuffer() const;
    bool headerMatchesDescription() const;

protected:
    /// Exchanges everything but the time stamps. If both images have a header, each keeps its header object, so that
    /// pointers from iplImage() stay valid.
    void swapPixels(Image& other) noexcept;

    using TimedData::operator=;
};

}  // namespace tarvos::core::cvdata
