#pragma once

#include <chrono>

namespace skin_tracker {

/// Tells on standard error how far a run is: on a terminal by a bar with percentage, frames a second and the time left,
/// elsewhere by a line every 100 frames.
class Progress {
public:
    /// @p expected frames are to come, 0 when that is not known.
    explicit Progress(int expected);
    /// Takes the bar away.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Counts one more frame.
    void step();

    int frames() const { return mFrames; }
    double framesPerSecond() const;

private:
    using Clock = std::chrono::steady_clock;

    int mExpected;
    int mFrames = 0;
    bool mOnTerminal;
    Clock::time_point mStart = Clock::now();
    Clock::time_point mShown = mStart;

    void show() const;
};

}  // namespace skin_tracker
