// A plugin of opengl_probe that wants a context, too.

#include "core/SystemManager.h"

extern "C" __attribute__((visibility("default"))) void wantContext() {
    tarvos::core::SystemManager::instance().initOpenGLContext(64, 48, 5, 5, "plugin", false);
}
