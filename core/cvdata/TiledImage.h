#pragma once

#include <tarvos/core/cvdata/Image.h>

#include <cstddef>

namespace tarvos::core::cvdata {

/// A mosaic: an image laid out as a grid of equally large cells, into which images of exactly that size are copied.
///
/// It is used as one Image; clone() gives a plain Image of the mosaic's pixels. A mosaic that was moved from is empty
/// and accepts no cells.
///
/// Class invariant: width() = columns x cell width and height() = rows x cell height. Assigning or resizing through an
/// `Image&` can break it; setCellImage then aborts.
///
/// @snippet image.cpp mosaic
/// @ingroup images
class TARVOS_CORE_EXPORT TiledImage : public Image {
public:
    /// @p rows x @p cols cells of @p cellWidth x @p cellHeight pixels each, not initialised. Errors as in Image.
    TiledImage(std::size_t rows, std::size_t cols, std::size_t cellWidth, std::size_t cellHeight,
               Image::ColorChannels channels, Image::BitsPerChannel bits);
    /// A copy of grid and pixels; see `Image(const Image&)`.
    TiledImage(const TiledImage& image) = default;
    /// Takes over the buffer, header and time stamp of @p image, which becomes empty.
    TiledImage(TiledImage&& image) noexcept = default;

    /// Copies grid, pixels, stride and alignment into a new buffer; there is no move assignment. The layout is what
    /// the channel sequence of the other's header says, and stays if that is unknown (and not of four channels). The
    /// time stamp and the header object stay. Aborts when @p image has no header.
    TiledImage& operator=(const TiledImage& image);

    /// Copies @p img, which the caller keeps, into the cell at (@p cellRow, @p cellCol), counted from 0. A region of
    /// interest of @p img is ignored; afterwards the mosaic's header has none.
    ///
    /// Aborts for an index out of range, a null image or one that is not of cell size. An image of another depth or
    /// number of channels than the mosaic's, grey in a colour mosaic for instance, is rejected by OpenCV with a
    /// `cv::Exception`; the mosaic's pixels are then unchanged.
    void setCellImage(size_t cellRow, size_t cellCol, Image* img);

protected:
    // Assigning a plain image would leave a grid that may not fit the pixels.
    using Image::operator=;

private:
    std::size_t mRows;
    std::size_t mCols;
    std::size_t mCellWidth;
    std::size_t mCellHeight;
};

}  // namespace tarvos::core::cvdata
