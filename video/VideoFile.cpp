#include <tarvos/core/Contract.h>
#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/video/VideoFile.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <stdexcept>

namespace tarvos::video {

namespace {

/// FFmpeg's conversion writes outside of smaller pictures.
constexpr int MIN_EXTENT = 16;

}  // namespace

VideoFile::VideoFile(const std::string& path, double frameRate)
    // Absolute: FFmpeg reads "x:" as a protocol.
    : mPath(std::filesystem::absolute(path)), mFrameRate(frameRate) {
    TARVOS_REQUIRE((frameRate > 0.0 && std::isfinite(frameRate)) &&
                   "VideoFile: the frame rate is not above 0 and finite.");
    if (std::filesystem::path(path).extension() != ".avi" || path.find('\0') != std::string::npos)
        throw std::runtime_error("the name of a video must end in .avi: " + path);
}

void VideoFile::add(const core::cvdata::Image& frame) {
    TARVOS_REQUIRE(!mIsFinished && "VideoFile: the video is finished.");
    const cv::Mat pixels = matView(frame);
    TARVOS_REQUIRE((pixels.type() == CV_8UC3 && frame.channels() == core::cvdata::Image::CHANNELS_BGR &&
                    !pixels.empty() && (mFrames == 0 || pixels.size() == mSize)) &&
                   "VideoFile: the frame is not 8-bit BGR and as large as the first.");
    mSize = pixels.size();
    const cv::Rect picture(0, 0, std::max(mSize.width, MIN_EXTENT), std::max(mSize.height, MIN_EXTENT));
    const int codec = cv::VideoWriter::fourcc('M', 'J', 'P', 'G');
    if (!mWriter.isOpened() && !mWriter.open(mPath, cv::CAP_FFMPEG, codec, mFrameRate, picture.size()))
        throw std::runtime_error("cannot write the video " + mPath);
    // FFmpeg's conversion reads a few bytes past the last row, hence one row more.
    mWithMargin = cv::Mat::zeros(picture.height + 1, picture.width, pixels.type());
    pixels.copyTo(mWithMargin(cv::Rect({}, mSize)));
    mWriter.write(mWithMargin(picture));
    ++mFrames;
}

void VideoFile::finish() {
    mIsFinished = true;
    if (mFrames == 0)
        throw std::runtime_error("no frame was added to the video " + mPath);
    mWriter.release();
    cv::VideoCapture written(mPath, cv::CAP_FFMPEG);
    int frames = 0;
    while (written.grab())
        ++frames;
    // The index stands at the end of the file; the count of frames is read from it.
    if (frames != mFrames || static_cast<int>(written.get(cv::CAP_PROP_FRAME_COUNT)) != mFrames)
        throw std::runtime_error("the video " + mPath + " was not written whole: is the disk full?");
}

}  // namespace tarvos::video
