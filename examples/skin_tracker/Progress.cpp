#include "Progress.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <unistd.h>

namespace skin_tracker {

namespace {

constexpr int FRAMES_PER_LINE = 100;
constexpr int BAR_WIDTH = 30;
constexpr std::chrono::milliseconds BETWEEN_BARS{100};

}  // namespace

Progress::Progress(int expected) : mExpected(expected), mOnTerminal(isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() {
    if (mOnTerminal)
        std::fputs("\r\033[K", stderr);
}

void Progress::step() {
    ++mFrames;
    if (!mOnTerminal) {
        if (mFrames % FRAMES_PER_LINE == 0)
            std::fprintf(stderr, "skin_tracker: %d frames\n", mFrames);
    } else if (Clock::now() - mShown >= BETWEEN_BARS) {
        mShown = Clock::now();
        show();
    }
}

double Progress::framesPerSecond() const {
    return mFrames / std::max(std::chrono::duration<double>(Clock::now() - mStart).count(), 1e-9);
}

void Progress::show() const {
    if (mExpected <= 0) {
        std::fprintf(stderr, "\r%d frames, %.0f a second\033[K", mFrames, framesPerSecond());
        return;
    }
    const double done = std::min(static_cast<double>(mFrames) / mExpected, 1.0);
    const auto full = static_cast<std::size_t>(done * BAR_WIDTH);
    const std::string bar = std::string(full, '=') + std::string(BAR_WIDTH - full, ' ');
    std::fprintf(stderr, "\r[%s] %3.0f %%, %.0f frames a second, %.0f s left\033[K", bar.c_str(), 100.0 * done,
                 framesPerSecond(), std::max(mExpected - mFrames, 0) / framesPerSecond());
}

}  // namespace skin_tracker
