// A plugin of opengl_probe that makes a context, too.

#include <tarvos/core/SystemManager.h>

extern "C" __attribute__((visibility("default"))) void makeContext() {
    tarvos::core::SystemManager::instance().initOpenGLContext(64, 48, 5, 5, "plugin", false);
}
