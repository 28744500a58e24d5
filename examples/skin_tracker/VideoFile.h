#pragma once

#include <opencv2/videoio.hpp>
#include <tarvos/core/cvdata/MatView.h>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace skin_tracker {

/// A video that is written frame by frame, as Motion JPEG in an AVI file.
class VideoFile {
public:
    /// The file at @p path, which is made with the first frame.
    VideoFile(const std::string& path, double frameRate)
        // From the root: FFmpeg takes what stands before a colon for a protocol.
        : mPath(std::filesystem::absolute(path)), mFrameRate(frameRate) {}

    /// Appends @p frame, 8-bit BGR and as large as the first. Throws `std::runtime_error` when it cannot be written.
    void add(const tarvos::core::cvdata::Image& frame) {
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
    /// Completes the file and reads it again. Throws `std::runtime_error` unless every frame is there.
    void finish() {
        mWriter.release();
        cv::VideoCapture written(mPath, cv::CAP_FFMPEG);
        int frames = 0;
        while (written.grab())
            ++frames;
        // The index stands at the end of the file; the count of frames is read from it.
        if (frames != mFrames || static_cast<int>(written.get(cv::CAP_PROP_FRAME_COUNT)) != mFrames)
            throw std::runtime_error("the video was not written whole: is the disk full?");
    }

private:
    std::string mPath;
    double mFrameRate;
    int mFrames = 0;
    cv::VideoWriter mWriter;
    cv::Mat mWithMargin;
};

}  // namespace skin_tracker
