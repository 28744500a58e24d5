#pragma once

#include <tarvos/core/cvdata/Image.h>

namespace skin_tracker {

/// Shows frames on the screen while they are tracked.
class Window {
public:
    /// Throws `std::runtime_error` when there is no display.
    Window();
    ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    /// Shows @p frame. False when Escape was pressed.
    bool show(const tarvos::core::cvdata::Image& frame);
};

}  // namespace skin_tracker
