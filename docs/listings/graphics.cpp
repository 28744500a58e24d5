/// @file
/// The graphics context, which needs an X display; shows a piece of the reference.

#include <GL/glew.h>
#include <tarvos/core/SystemManager.h>

int main() {
    //! [context]
    tarvos::core::SystemManager::instance().initOpenGLContext(640, 480, 0, 0, "off screen", true);
    return glewIsSupported("GL_ARB_vertex_buffer_object") ? 0 : 1;  // the context is current
    //! [context]
}
