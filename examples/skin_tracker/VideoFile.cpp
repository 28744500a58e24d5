#include "VideoFile.h"

#include <tarvos/core/cvdata/MatView.h>

#include <stdexcept>

namespace skin_tracker {

void VideoFile::add(const tarvos::core::cvdata::Image& frame) {
    const cv::Mat pixels = matView(frame);
    const int codec = cv::VideoWriter::fourcc('M', 'J', 'P', 'G');
    if (!mWriter.isOpened() && !mWriter.open(mPath, cv::CAP_FFMPEG, codec, mFrameRate, pixels.size()))
        throw std::runtime_error("cannot write the video");
    // FFmpeg's conversion reads a few bytes past the last row, which here lie in one row more.
    mWithMargin.create(pixels.rows + 1, pixels.cols, pixels.type());
    pixels.copyTo(mWithMargin.rowRange(0, pixels.rows));
    mWriter.write(mWithMargin.rowRange(0, pixels.rows));
    ++mFrames;
}

void VideoFile::finish() {
    mWriter.release();
    cv::VideoCapture written(mPath, cv::CAP_FFMPEG);
    int frames = 0;
    while (written.grab())
        ++frames;
    // The index stands at the end of the file; the count of frames is read from it.
    if (frames != mFrames || static_cast<int>(written.get(cv::CAP_PROP_FRAME_COUNT)) != mFrames)
        throw std::runtime_error("the video was not written whole: is the disk full?");
}

}  // namespace skin_tracker
