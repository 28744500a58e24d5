#pragma once

#include <opencv2/highgui.hpp>
#include <tarvos/core/cvdata/MatView.h>

#include <X11/Xlib.h>
#include <stdexcept>

namespace skin_tracker {

/// Shows frames on the screen while they are tracked.
class Preview {
public:
    /// Throws `std::runtime_error` if there is no display.
    Preview() {
        // OpenCV's window system would end the process.
        Display* display = XOpenDisplay(nullptr);
        if (display == nullptr)
            throw std::runtime_error("-show needs a display");
        XCloseDisplay(display);
    }

    /// Shows @p frame. False when Escape was pressed.
    bool show(const tarvos::core::cvdata::Image& frame) {
        constexpr int ESCAPE = 27;
        cv::imshow("skin_tracker", matView(frame));
        return (cv::waitKey(1) & 0xFF) != ESCAPE;
    }
};

}  // namespace skin_tracker
