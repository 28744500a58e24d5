/// @file
/// Calls SystemManager as often as told, `opengl_probe TIMES CHECK`, on a GPU that the environment makes poorer:
/// GLEW's queries are answered here before they reach GLEW.

#include "core/SystemManager.h"

#include <GL/glew.h>
#include <GL/glut.h>

#include <cstdlib>
#include <dlfcn.h>
#include <iostream>
#include <string>

namespace {

template <typename Function>
Function next(const char* name, Function /*like*/) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

bool named(const char* variable, const char* text) {
    const char* value = std::getenv(variable);
    return value != nullptr && (std::string(value) + " ").find(std::string(text) + " ") != std::string::npos;
}

}  // namespace

GLboolean glewIsSupported(const char* name) {
    if (named("WITHHELD", name)) return GL_FALSE;
    return named("GRANTED", name) ? GLboolean{GL_TRUE} : next("glewIsSupported", &glewIsSupported)(name);
}

GLenum glewInit() {
    if (named("WITHHELD", "glewInit")) return GLEW_ERROR_NO_GL_VERSION;
    const GLenum result = next("glewInit", &glewInit)();
    if (named("WITHHELD", "glGetProgramivARB")) __glewGetProgramivARB = nullptr;
    return result;
}

int main(int /*argc*/, char** argv) {
    for (int i = 0; i < std::atoi(argv[1]); ++i)
        tarvos::core::SystemManager::instance().initOpenGLContext(64 + 10 * i, 48, 5 + i, 5, "probe",
                                                                  argv[2][0] == '1');
    std::cout << "window " << glutGetWindow() << ": " << glutGet(GLUT_INIT_WINDOW_WIDTH) << "x"
              << glutGet(GLUT_INIT_WINDOW_HEIGHT) << " at " << glutGet(GLUT_INIT_WINDOW_X) << std::endl;
}
