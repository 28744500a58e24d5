#include "Mosaic.h"

#include <opencv2/imgproc.hpp>
#include <tarvos/core/cvdata/MatView.h>

#include <algorithm>

namespace skin_tracker {

namespace {

using tarvos::core::cvdata::Image;
using tarvos::core::cvdata::TiledImage;

constexpr std::size_t GRID = 4;
constexpr std::size_t CELLS = GRID * GRID;
/// Enough frames for an even pick of 16.
constexpr std::size_t MAX_KEPT = 8 * CELLS;
constexpr int CELL_WIDTH = 320;
/// Pixels around the frame in a cell.
constexpr int BORDER = 2;

}  // namespace

void Mosaic::add(const Image& frame, const std::string& caption) {
    if (mOffered++ % mStride != 0)
        return;
    const double scale = std::min(1.0, static_cast<double>(CELL_WIDTH) / frame.width());
    const cv::Size size(std::max(1, cvRound(frame.width() * scale)), std::max(1, cvRound(frame.height() * scale)));
    Image cell(size.width + 2 * BORDER, size.height + 2 * BORDER, frame.channels(), frame.bitsPerChannel());
    cv::Mat whole = matView(cell);
    whole.setTo(cv::Scalar::all(0));
    cv::Mat pixels = whole(cv::Rect({BORDER, BORDER}, size));
    cv::resize(matView(frame), pixels, pixels.size(), 0, 0, cv::INTER_AREA);
    cv::putText(pixels, caption, {6, pixels.rows - 8}, cv::FONT_HERSHEY_SIMPLEX, 0.45, cv::Scalar::all(0), 3,
                cv::LINE_AA);
    cv::putText(pixels, caption, {6, pixels.rows - 8}, cv::FONT_HERSHEY_SIMPLEX, 0.45, cv::Scalar::all(255), 1,
                cv::LINE_AA);
    mKept.push_back(std::move(cell));

    if (mKept.size() == MAX_KEPT) {
        std::vector<Image> everySecond;
        for (std::size_t i = 0; i < MAX_KEPT; i += 2)
            everySecond.push_back(std::move(mKept[i]));
        mKept = std::move(everySecond);
        mStride *= 2;
    }
}

TiledImage Mosaic::compose() {
    const Image& first = mKept.front();
    TiledImage mosaic(GRID, GRID, static_cast<std::size_t>(first.width()), static_cast<std::size_t>(first.height()),
                      first.channels(), first.bitsPerChannel());
    cvSetZero(mosaic.iplImage());
    const std::size_t count = std::min(CELLS, mKept.size());
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t pick = count > 1 ? i * (mKept.size() - 1) / (count - 1) : 0;
        mosaic.setCellImage(i / GRID, i % GRID, &mKept[pick]);
    }
    return mosaic;
}

}  // namespace skin_tracker
