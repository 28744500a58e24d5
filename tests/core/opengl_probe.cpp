/// @file
/// Does what the words of its command line name, on a card that the environment describes.

#include "core/SystemManager.h"

#include <GL/glew.h>
// GLEW comes first: it replaces the header of OpenGL that the others include.
#include <GL/freeglut.h>

#include <cstdlib>
#include <dlfcn.h>
#include <iostream>
#include <map>
#include <string>

/// Whether the card has an extension, by the list EXTENSIONS in the environment, whatever GLEW knows of the machine's.
GLboolean glewIsSupported(const char* name) {
    const std::string extensions = std::getenv("EXTENSIONS");
    if (extensions.find("GL_ARB_fragment_program ") == std::string::npos)
        __glewGetProgramivARB = nullptr;
    return extensions.find(std::string(name) + " ") != std::string::npos ? GL_TRUE : GL_FALSE;
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
