/// @file
/// Calls SystemManager as often as told, `opengl_probe TIMES CHECK [WORDS]`, on a GPU that the environment makes
/// poorer: GLEW's queries are answered here before they reach GLEW.

#include "core/SystemManager.h"

#include <GL/glew.h>
// GLEW comes first: it replaces the header of OpenGL that the others include.
#include <GL/freeglut.h>

#include <algorithm>
#include <cstdlib>
#include <dlfcn.h>
#include <iostream>
#include <string>
#include <vector>

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

void initialiseGlut() {
    int argc = 1;
    char name[] = "application";
    char* argv[] = {name, nullptr};
    glutInit(&argc, argv);
}

void loadPlugin() {
    void* plugin = dlopen(OPENGL_PLUGIN, RTLD_NOW | RTLD_LOCAL);
    reinterpret_cast<void (*)()>(dlsym(plugin, "wantContext"))();
}

/// Runs the main loop for a window of the application's, for a while.
void runMainLoop() {
    glutCreateWindow("application");
    glutDisplayFunc([] { glutSwapBuffers(); });
    glutTimerFunc(
        200, [](int /*value*/) { glutLeaveMainLoop(); }, 0);
    glutSetOption(GLUT_ACTION_ON_WINDOW_CLOSE, GLUT_ACTION_CONTINUE_EXECUTION);
    glutMainLoop();
    std::cout << "main loop left" << std::endl;
}

void tellWindow() {
    std::system("xwininfo -name probe 2>&1 | grep 'Map State'");
}

}  // namespace

/// What is done before (own) and after (plugin, window, loop) the calls is told by the words behind.
int main(int argc, char** argv) {
    const std::vector<std::string> words(argv + 3, argv + argc);
    const auto told = [&](const char* word) { return std::find(words.begin(), words.end(), word) != words.end(); };
    if (told("own"))
        initialiseGlut();
    for (int i = 0; i < std::atoi(argv[1]); ++i)
        tarvos::core::SystemManager::instance().initOpenGLContext(64 + 10 * i, 48, 5 + i, 5, "probe",
                                                                  argv[2][0] == '1');
    std::cout << "window " << glutGetWindow() << ": " << glutGet(GLUT_INIT_WINDOW_WIDTH) << "x"
              << glutGet(GLUT_INIT_WINDOW_HEIGHT) << " at " << glutGet(GLUT_INIT_WINDOW_X) << std::endl;
    if (told("plugin"))
        loadPlugin();
    if (told("window"))
        tellWindow();
    if (told("loop"))
        runMainLoop();
}
