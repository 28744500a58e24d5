#pragma once

#include <tarvos/core/Export.h>

namespace tarvos::core {

/// Gives the application an OpenGL context without showing a window, and checks what the GPU can do.
///
/// GLUT is initialised once per process, by the first call unless the application has done it; the context belongs to
/// the thread that made it. Without an X display, GLUT exits. The application may run GLUT's main loop for its windows.
///
/// @snippet graphics.cpp context
/// @ingroup graphics
class TARVOS_CORE_EXPORT SystemManager {
public:
    /// The one object of the process, for the executable and all plugins.
    static SystemManager& instance();
    SystemManager(const SystemManager&) = delete;
    SystemManager& operator=(const SystemManager&) = delete;

    /// Creates another hidden window (unmapped when this returns) with the title @p title, makes its
    /// context current, initialises GLEW and prints GLEW's version to standard output. The window has @p width x @p
    /// height pixels and its upper left corner at (@p posX, @p posY) on the screen; later calls use the first call's
    /// size and position. Windows are not destroyed.
    ///
    /// If GLEW cannot be initialised, it prints a message and exits with `exit(-1)` (status 255). With @p
    /// checkCapabilities it prints the GPU's vendor, what it supports and its limits to standard output, and exits the
    /// same way if a capability is missing (shaders, framebuffer objects, rectangle textures; vertex buffer objects and
    /// geometry shaders are optional). Aborts when @p title is null.
    void initOpenGLContext(int width, int height, int posX, int posY, const char* title, bool checkCapabilities);

private:
    bool mGlutInitialised = false;

    SystemManager() = default;
};

}  // namespace tarvos::core
