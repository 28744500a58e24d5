/// @file
/// Does what the words of its command line name, on a GPU that the environment makes poorer: GLEW's queries are
/// answered here before they reach GLEW.

#include "core/SystemManager.h"

#include <GL/glew.h>
// GLEW comes first: it replaces the header of OpenGL that the others include.
#include <GL/freeglut.h>

#include <cstdlib>
#include <dlfcn.h>
#include <iostream>
#include <map>
#include <string>

namespace {

template <typename Function>
Function* next(const char* name, Function* /*like*/) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool named(const char* variable, const char* text) {
    const char* value = std::getenv(variable);
    return value != nullptr && (std::string(value) + " ").find(std::string(text) + " ") != std::string::npos;
}

}  // namespace

GLboolean glewIsSupported(const char* name) {
    if (named("WITHHELD", name))
        return GL_FALSE;
    return named("GRANTED", name) ? GLboolean{GL_TRUE} : next("glewIsSupported", &glewIsSupported)(name);
}

GLenum glewInit() {
    if (named("WITHHELD", "glewInit"))
        return GLEW_ERROR_NO_GL_VERSION;
    const GLenum result = next("glewInit", &glewInit)();
    if (named("WITHHELD", "glGetProgramivARB"))
        __glewGetProgramivARB = nullptr;
    return result;
}

namespace {

template <int WIDTH, bool CHECKS>
void makeContext() {
    tarvos::core::SystemManager::instance().initOpenGLContext(WIDTH, 48, 5, 6, "probe", CHECKS);
}

void initialiseGlut() {
    int argc = 1;
    char name[] = "application";
    char* argv[] = {name, nullptr};
    glutInit(&argc, argv);
}

void loadPlugin() {
    void* plugin = dlopen(OPENGL_PLUGIN, RTLD_NOW | RTLD_LOCAL);
    reinterpret_cast<void (*)()>(dlsym(plugin, "makeContext"))();
}

/// Runs the main loop for a window of the application's, for a while.
void runMainLoop() {
    glutCreateWindow("application");
    glutDisplayFunc([] { glutSwapBuffers(); });
    const auto leave = [](int /*value*/) { glutLeaveMainLoop(); };
    glutTimerFunc(200, leave, 0);
    glutSetOption(GLUT_ACTION_ON_WINDOW_CLOSE, GLUT_ACTION_CONTINUE_EXECUTION);
    glutMainLoop();
    std::cout << "main loop left" << std::endl;
}

void printWindow() {
    std::cout << "window " << glutGetWindow() << ": " << glutGet(GLUT_INIT_WINDOW_WIDTH) << "x"
              << glutGet(GLUT_INIT_WINDOW_HEIGHT) << " at " << glutGet(GLUT_INIT_WINDOW_X) << ", "
              << glutGet(GLUT_INIT_WINDOW_Y) << std::endl;
    std::system("xwininfo -name probe | grep 'Map State'");
}

const std::map<std::string, void (*)()> ACTIONS = {{"glut", initialiseGlut},
                                                   {"context", makeContext<64, false>},
                                                   {"wider", makeContext<74, false>},
                                                   {"checks", makeContext<64, true>},
                                                   {"plugin", loadPlugin},
                                                   {"window", printWindow},
                                                   {"loop", runMainLoop}};

}  // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        ACTIONS.at(argv[i])();
}
