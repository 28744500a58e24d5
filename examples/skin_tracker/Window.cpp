#include "Window.h"

#include <opencv2/highgui.hpp>
#include <tarvos/core/cvdata/MatView.h>

#include <X11/Xlib.h>
#include <stdexcept>

namespace skin_tracker {

namespace {

constexpr const char* TITLE = "skin_tracker";
constexpr int ESCAPE = 27;

}  // namespace

Window::Window() {
    // OpenCV's window system ends the process where it finds no display.
    Display* display = XOpenDisplay(nullptr);
    if (display == nullptr)
        throw std::runtime_error("-show needs a display");
    XCloseDisplay(display);
    cv::namedWindow(TITLE, cv::WINDOW_AUTOSIZE);
}

Window::~Window() {
    cv::destroyWindow(TITLE);
}

bool Window::show(const tarvos::core::cvdata::Image& frame) {
    cv::imshow(TITLE, matView(frame));
    return (cv::waitKey(1) & 0xFF) != ESCAPE;
}

}  // namespace skin_tracker
