#pragma once

#include <opencv2/videoio.hpp>
#include <tarvos/core/cvdata/MatView.h>

#include <algorithm>
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

    /// Appends @p frame, 8-bit BGR and as large as the first. Throws `std::runtime_error` if it cannot be written.
    void add(const tarvos::core::cvdata::Image& frame) {
        const cv::Mat pixels = matView(frame);
        // FFmpeg's conversion writes outside of smaller pictures.
        const cv::Rect picture(0, 0, std::max(pixels.cols, LEAST), std::max(pixels.rows, LEAST));
        const int codec = cv::VideoWriter::fourcc('M', 'J', 'P', 'G');
        if (!mWriter.isOpened() && !mWriter.open(mPath, cv::CAP_FFMPEG, codec, mFrameRate, picture.size()))
            throw std::runtime_error("cannot write the video");
        // FFmpeg's conversion reads a few bytes past the last row, hence one row more.
        mWithMargin = cv::Mat::zeros(picture.height + 1, picture.width, pixels.type());
        pixels.copyTo(mWithMargin(cv::Rect({}, pixels.size())));
        mWriter.write(mWithMargin(picture));
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
    static constexpr int LEAST = 16;

    std::string mPath;
    double mFrameRate;
    int mFrames = 0;
    cv::VideoWriter mWriter;
    cv::Mat mWithMargin;
};

}  // namespace skin_tracker
