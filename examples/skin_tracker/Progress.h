#pragma once

#include <chrono>
#include <cstdio>
#include <string>
#include <unistd.h>

namespace skin_tracker {

/// Reports on standard error how far a run is: on a terminal in a line that changes, elsewhere every 100 frames.
class Progress {
public:
    /// @p expected is the number of frames to come, or 0 if it is unknown.
    explicit Progress(int expected)
        : mExpected(expected > 0 ? " of " + std::to_string(expected) : ""), mOnTerminal(isatty(STDERR_FILENO) == 1) {}
    ~Progress() {
        if (mOnTerminal)
            std::fputs("\r\033[K", stderr);
    }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Counts one more frame.
    void step() {
        ++mFrames;
        if (mOnTerminal && mFrames % 10 == 0)
            std::fprintf(stderr, "\r\033[K%d%s frames, %.0f a second", mFrames, mExpected.c_str(), framesPerSecond());
        else if (!mOnTerminal && mFrames % 100 == 0)
            std::fprintf(stderr, "skin_tracker: %d frames\n", mFrames);
    }
    double framesPerSecond() const {
        return mFrames / std::chrono::duration<double>(std::chrono::steady_clock::now() - mStart).count();
    }

private:
    std::string mExpected;
    int mFrames = 0;
    bool mOnTerminal;
    std::chrono::steady_clock::time_point mStart = std::chrono::steady_clock::now();
};

}  // namespace skin_tracker
