/// @file
/// Makes one context with checks on the card that the environment describes ("checks"), or several without.

#include <GL/glew.h>
#include <tarvos/core/SystemManager.h>
// GLEW comes first: it replaces the header of OpenGL that the others include.
#include <GL/freeglut.h>

#include <cstdlib>
#include <dlfcn.h>
#include <iostream>
#include <string>

/// Whether the card has an extension, by the list EXTENSIONS in the environment, whatever GLEW knows of the machine's.
GLboolean glewIsSupported(const char* name) {
    const std::string extensions = std::getenv("EXTENSIONS");
    if (extensions.find("GL_ARB_fragment_program ") == std::string::npos)
        __glewGetProgramivARB = nullptr;
    return extensions.find(std::string(name) + " ") != std::string::npos ? GL_TRUE : GL_FALSE;
}

namespace {

void makeContext(int width, bool checks) {
    tarvos::core::SystemManager::instance().initOpenGLContext(width, 48, 5, 6, "probe", checks);
}

void makeContextInPlugin() {
    void* plugin = dlopen(OPENGL_PLUGIN, RTLD_NOW | RTLD_LOCAL);
    reinterpret_cast<void (*)()>(dlsym(plugin, "makeContext"))();
}

void printWindow() {
    std::cout << "window " << glutGetWindow() << ": " << glutGet(GLUT_INIT_WINDOW_WIDTH) << "x"
              << glutGet(GLUT_INIT_WINDOW_HEIGHT) << " at " << glutGet(GLUT_INIT_WINDOW_X) << ", "
              << glutGet(GLUT_INIT_WINDOW_Y) << std::endl;
    std::system("xwininfo -name probe | grep 'Map State'");
}

/// Runs GLUT's main loop for a while.
void runMainLoop() {
    const auto leave = [](int /*value*/) { glutLeaveMainLoop(); };
    glutTimerFunc(200, leave, 0);
    glutSetOption(GLUT_ACTION_ON_WINDOW_CLOSE, GLUT_ACTION_CONTINUE_EXECUTION);
    glutMainLoop();
    std::cout << "main loop left" << std::endl;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 1 && argv[1] == std::string("checks")) {
        makeContext(64, true);
        return 0;
    }
    glutInit(&argc, argv);
    makeContext(64, false);
    makeContext(74, false);
    makeContextInPlugin();
    printWindow();
    runMainLoop();
}
