#pragma once

#include "TimedData.h"

#include <opencv2/core/types_c.h>

#include <cstdint>
#include <memory>
#include <string>

namespace tarvos::core::cvdata {

/// An image that owns its pixels and keeps an OpenCV header over them.
///
/// OpenCV's C functions take iplImage() and work on the image's own pixels, in place; `matView(image)` of MatView.h is
/// a `cv::Mat` view of them for the C++ functions. imageBuffer() is the raw access. An image never adopts memory:
/// building one from an OpenCV header, a file or another image copies the pixels.
///
/// The pixels lie in one buffer, rows widthStep apart, the channel values of a pixel side by side. In an image made
/// from a size a row is `width * channels * bytes per value` bytes, plus `(4 - width * channels mod 4) mod 4` bytes
/// of fill; an image made from a header or a copy takes the header's stride.
///
/// Class invariant: an image is empty (no buffer, no header, 0 x 0), or row stride x rows = bytes allocated and the
/// header describes the buffer as the accessors do. Of the operations under "Maintenance", setChannels,
/// setNofChannels and updateFromOpencvHeader change the description alone; call resizeMemory or updateOpencvHeader
/// next (which may describe less than the buffer). Until then assigning from the image stops the process, and no
/// operation leaves the buffer.
///
/// Sizes that no image can have (a negative width or height, or more than 2^31 - 1 bytes, the most an OpenCV header
/// counts) and a lack of memory, OpenCV's included, throw `std::bad_alloc` or a class derived from it. When an
/// operation throws, its target is as it was.
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
    /// not looked at. Three channels in an order other than "BGR" or "R.." are taken as CHANNELS_BGR. What fills up the
    /// last row is not read, so that the header may be a view into a larger image; it is 0 here.
    ///
    /// Stops the process when @p image or its data is null, or it has not 1, 3 or 4 channels or a depth outside
    /// BitsPerChannel. Throws `cv::Exception` for a stride shorter than a row.
    explicit Image(const IplImage* image);
    /// The image in the file at @p path, as OpenCV decodes it to 8-bit CHANNELS_BGR, without regard to an EXIF
    /// orientation. When that fails for whatever reason, the image is empty and "ERROR: Could not load image: " and the
    /// path are written to standard error; for a damaged image, the decoder's own words may stand before that line.
    /// Only regular files are opened. DICOM is not read: OpenCV's decoder of it ends the process where a file is
    /// damaged. Throws nothing but `std::bad_alloc`.
    ///
    /// The first image loaded or saved brings in the libraries behind OpenCV's codecs, some 50 ms once in a process.
    explicit Image(std::string path);
    /// A copy of the pixels of @p image and of what fills up its rows, described by its OpenCV header: the layout is
    /// what the header's channel sequence says (OpenCV knows "BGR" and "BGRA", so CHANNELS_RGB becomes CHANNELS_BGR),
    /// the alignment 4 or 8 as OpenCV found fit, the time stamp 0. Stops the process when @p image is empty.
    Image(const Image& image);
    /// The image @p image was, its time stamp, buffer and header included; @p image becomes empty.
    Image(Image&& image) noexcept;
    ~Image() override;

    /// A new image made from this image's header, owned by the caller; see `Image(const Image&)`. Stops the process
    /// when this image is empty.
    virtual Image* clone() const;

    /// Channels of a pixel: 1, 3 or 4.
    virtual int nofChannels() const { return mDescription.nofChannels; }

    /// Copies pixels, size, layout, depth and alignment; the time stamp stays. The buffer, its address and the header
    /// with its region of interest are kept when the geometry is the same and a new buffer would be as large, so that
    /// frames of one size are copied without an allocation. The stride becomes that of an image made from a size; when
    /// it is the source's, every byte is copied, otherwise what fills up the rows is 0. Assigning an empty image makes
    /// this one empty.
    Image& operator=(const Image& image);
    /// The same, so that pointers taken from before hold where they would hold after a copy. Where a copy would need a
    /// new buffer, that of @p image is taken over, which becomes empty; otherwise @p image stays as it is.
    Image& operator=(Image&& image);  // NOLINT(*-noexcept-move-*,*-exception-escape): it may need a new buffer

    /// Whether there are neither buffer nor header: after the default constructor, a file that could not be loaded, or
    /// when the pixels were taken over.
    bool empty() const noexcept { return mImageBuffer == nullptr; }
    /// Width in pixels.
    int width() const noexcept { return mDescription.width; }
    /// Height in pixels.
    int height() const noexcept { return mDescription.height; }
    /// Layout of the channels.
    ColorChannels channels() const noexcept { return mDescription.channels; }
    /// Depth of a channel.
    BitsPerChannel bitsPerChannel() const noexcept { return mDescription.bits; }
    /// The first pixel of the first row; null in an empty image. Changes only where the image is given another
    /// geometry.
    unsigned char* imageBuffer() const noexcept { return mImageBuffer.get(); }
    /// The OpenCV header over the buffer, owned by the image; null in an empty image. Its row stride is `widthStep`:
    /// for an image of one row, OpenCV states the row without its fill.
    IplImage* iplImage() const noexcept { return mIplImage.get(); }

    /// Writes the image to the file at @p path in the format of the path's ending (".png", ".jpg", ".bmp", ".tiff",
    /// ".webp", ".ppm" and whatever else OpenCV encodes in memory), red and blue in their places whatever the layout. A
    /// depth that the format lacks is converted to 8 bits, as OpenCV does. The file is written whole or not at all: it
    /// replaces a regular file or a link of that name only when it is complete.
    ///
    /// False, with "ERROR: Could not save image: " and the path on standard error, when that cannot be done: an empty
    /// image, an ending that says nothing, a full disk. Throws nothing but `std::bad_alloc`.
    bool save(std::string path) const;

    /// @name Maintenance
    /// @{

    /// Sets the number of channels that @p channels implies, but not the layout. Stops the process when @p channels
    /// is no enumerator.
    void setNofChannels(ColorChannels channels);
    /// Sets the layout and the number of channels, for instance after a conversion in place from BGR to RGB.
    void setChannels(ColorChannels channels);
    /// Makes the header describe the buffer as the fields do, without a region of interest. Stops the process when that
    /// would reach outside the buffer or a size is negative. A stride that OpenCV rejects, being shorter than a row, is
    /// its `cv::Exception`, and the header is as it was.
    void updateOpencvHeader();
    /// Takes size, layout, depth, alignment and stride from @p image, but no pixels. An unknown channel order or
    /// count leaves the layout as it was. Stops the process when @p image is null or its depth is outside
    /// BitsPerChannel.
    void updateFromOpencvHeader(const IplImage* image);
    /// Gives the image a new buffer for the new size, not initialised, also when the size stays.
    void resizeMemory(int width, int height);

    /// @}

private:
    /// How the pixels lie.
    struct Description {
        int width = 0;
        int height = 0;
        ColorChannels channels = CHANNELS_RGB;
        std::int32_t nofChannels = 3;
        BitsPerChannel bits = BITS_8U;
        std::int32_t align = 4;
        std::int64_t widthStep = 0;

        bool operator==(const Description& other) const;
        std::int64_t bytesPerRow() const;
        std::int64_t reach() const;
        Description laidOutByRule() const;
        bool isPossible() const;
    };
    struct HeaderRelease {
        void operator()(IplImage* header) const noexcept;
    };

    std::uint32_t mImageSize = 0;
    std::unique_ptr<unsigned char[]> mImageBuffer;
    Description mDescription;
    std::unique_ptr<IplImage, HeaderRelease> mIplImage;

    explicit Image(const Description& description);
    void allocate();
    void copyFromHeader(const IplImage* image, std::int64_t readable);
    void copyRows(const unsigned char* source, std::int64_t sourceStep, std::int64_t readable);
    bool isInStep() const;
    bool isLaidOut(const Description& wanted) const;

protected:
    /// Exchanges everything but the time stamps. Each image keeps its header object where both have one, so that a
    /// pointer taken from iplImage() stays good.
    void swapPixels(Image& other) noexcept;

    // The root's assignment is meant for callers who hold a CvData&; here it would only hide a mistake.
    using TimedData::operator=;
};

}  // namespace tarvos::core::cvdata
