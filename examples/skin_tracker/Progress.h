#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <unistd.h>

namespace skin_tracker {

/// Tells on standard error how far a run is: on a terminal by a bar with percentage, frames a second and the time left,
/// elsewhere by a line every 100 frames.
class Progress {
public:
    /// @p expected frames are to come, 0 when that is not known.
    explicit Progress(int expected) : mExpected(expected), mOnTerminal(isatty(STDERR_FILENO) == 1) {}
    /// Takes the bar away.
    ~Progress() {
        if (mOnTerminal)
            std::fputs("\r\033[K", stderr);
    }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Counts one more frame.
    void step() {
        ++mFrames;
        if (mOnTerminal && Clock::now() - mShown >= std::chrono::milliseconds(100))
            show();
        else if (!mOnTerminal && mFrames % 100 == 0)
            std::fprintf(stderr, "skin_tracker: %d frames\n", mFrames);
    }
    double framesPerSecond() const {
        return mFrames / std::max(std::chrono::duration<double>(Clock::now() - mStart).count(), 1e-9);
    }

private:
    using Clock = std::chrono::steady_clock;
    static constexpr int BAR_WIDTH = 30;

    int mExpected;
    int mFrames = 0;
    bool mOnTerminal;
    Clock::time_point mStart = Clock::now();
    Clock::time_point mShown = mStart;

    void show() {
        mShown = Clock::now();
        if (mExpected <= 0) {
            std::fprintf(stderr, "\r%d frames, %.0f a second\033[K", mFrames, framesPerSecond());
            return;
        }
        const double done = std::min(static_cast<double>(mFrames) / mExpected, 1.0);
        std::string bar(BAR_WIDTH, ' ');
        std::fill_n(bar.begin(), static_cast<int>(done * BAR_WIDTH), '=');
        std::fprintf(stderr, "\r[%s] %3.0f %%, %.0f frames a second, %.0f s left\033[K", bar.c_str(), 100.0 * done,
                     framesPerSecond(), std::max(mExpected - mFrames, 0) / framesPerSecond());
    }
};

}  // namespace skin_tracker
