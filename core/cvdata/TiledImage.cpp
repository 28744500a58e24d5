#include <opencv2/core/core_c.h>
#include <tarvos/core/Contract.h>
#include <tarvos/core/cvdata/TiledImage.h>

#include <climits>
#include <cstddef>
#include <new>

namespace tarvos::core::cvdata {

namespace {

int extent(std::size_t cells, std::size_t cellExtent) {
    if (cellExtent != 0 && cells > std::size_t{INT_MAX} / cellExtent)
        throw std::bad_array_new_length();
    return static_cast<int>(cells * cellExtent);
}

}  // namespace

TiledImage::TiledImage(std::size_t rows, std::size_t cols, std::size_t cellWidth, std::size_t cellHeight,
                       Image::ColorChannels channels, Image::BitsPerChannel bits)
    : Image(extent(cols, cellWidth), extent(rows, cellHeight), channels, bits),
      mRows(rows),
      mCols(cols),
      mCellWidth(cellWidth),
      mCellHeight(cellHeight) {}

TiledImage& TiledImage::operator=(const TiledImage& image) {
    if (this == &image)
        return *this;
    TiledImage copy(image);
    if (nofChannels() == copy.nofChannels())
        copy.setChannels(channels());  // which an unknown channel sequence leaves
    copy.updateFromOpencvHeader(image.iplImage());
    copy.updateOpencvHeader();
    swapPixels(copy);
    mRows = image.mRows;
    mCols = image.mCols;
    mCellWidth = image.mCellWidth;
    mCellHeight = image.mCellHeight;
    return *this;
}

void TiledImage::setCellImage(size_t cellRow, size_t cellCol, Image* img) {
    TARVOS_REQUIRE((cellRow < mRows) && "cell row index is out of range");
    TARVOS_REQUIRE((cellCol < mCols) && "cell col index is out of range");
    TARVOS_REQUIRE(img != NULL);
    TARVOS_REQUIRE(img->width() == mCellWidth);
    TARVOS_REQUIRE(img->height() == mCellHeight);
    if (mCellWidth == 0 || mCellHeight == 0)
        return;
    TARVOS_REQUIRE(
        (iplImage() != NULL && iplImage()->width == mCols * mCellWidth && iplImage()->height == mRows * mCellHeight) &&
        "the mosaic was resized through its base");

    TARVOS_REQUIRE(img->iplImage() != NULL);
    // A header over the cell alone: the pixels that a region of interest would name.
    cvResetImageROI(iplImage());
    IplImage cell = *iplImage();
    cell.width = static_cast<int>(mCellWidth);
    cell.height = static_cast<int>(mCellHeight);
    cell.imageData += static_cast<std::ptrdiff_t>(mCellHeight * cellRow) * cell.widthStep +
                      static_cast<std::ptrdiff_t>(mCellWidth * cellCol) * cell.nChannels * (cell.depth & 0xFF) / 8;
    IplImage source = *img->iplImage();
    source.roi = nullptr;
    cvCopy(&source, &cell);
}

}  // namespace tarvos::core::cvdata
