#include <GL/glew.h>
#include <tarvos/core/Contract.h>
#include <tarvos/core/Report.h>
#include <tarvos/core/SystemManager.h>
// GLEW comes first: it replaces the header of OpenGL that the others include.
#include <GL/freeglut.h>
#include <GL/glx.h>

#include <cstdlib>
#include <initializer_list>
#include <iostream>
#include <string>

namespace tarvos::core {

namespace {

std::string textOf(const GLubyte* text) {
    return text != nullptr ? reinterpret_cast<const char*>(text) : "";
}

void requireSupport(std::initializer_list<const char*> extensions, const char* complaint) {
    for (const char* extension : extensions) {
        if (!glewIsSupported(extension)) {
            report(std::cerr, complaint);
            std::exit(-1);
        }
    }
}

/// Prints the first supported extension, if any.
void printSupport(std::initializer_list<const char*> extensions) {
    for (const char* extension : extensions) {
        if (glewIsSupported(extension)) {
            report(std::cout, extension);
            return;
        }
    }
}

void printLimit(const char* label, GLenum limit) {
    GLint value = 0;
    glGetIntegerv(limit, &value);
    report(std::cout, label + std::to_string(value));
}

/// 0 if the driver has no assembly programs, and thus no entry point.
void printProgramLimit(const char* label, GLenum limit) {
    GLint value = 0;
    if (glGetProgramivARB != nullptr)
        glGetProgramivARB(GL_FRAGMENT_PROGRAM_ARB, limit, &value);
    report(std::cout, label + std::to_string(value));
}

void checkGpu() {
    report(std::cout, "GPU Vendor: " + textOf(glGetString(GL_VENDOR)));
    requireSupport(
        {"GL_ARB_fragment_shader", "GL_ARB_vertex_shader", "GL_ARB_shader_objects", "GL_ARB_shading_language_100"},
        "ERROR: GPU does not support required Shader capabilities.");
    requireSupport({"GL_EXT_framebuffer_object"},
                   "ERROR: Framebuffer Objects (GL_EXT_framebuffer_object) are not supported.");
    requireSupport({"GL_ARB_texture_rectangle"}, "GL_ARB_texture_rectangle is not supported");

    GLint size = 0;
    glGetIntegerv(GL_MAX_RECTANGLE_TEXTURE_SIZE_ARB, &size);
    report(std::cout, "GL_TEXTURE_RECTANGLE_ARB\nGL_MAX_RECTANGLE_TEXTURE_SIZE_EXT: " + std::to_string(size) + "x" +
                          std::to_string(size));
    printSupport({"GL_ARB_vertex_buffer_object"});
    printSupport({"GL_EXT_geometry_shader4", "GL_NV_geometry_shader4"});

    printLimit("GL_MAX_DRAW_BUFFERS:\t", GL_MAX_DRAW_BUFFERS);
    printLimit("GL_MAX_TEXTURE_UNITS:\t\t", GL_MAX_TEXTURE_UNITS);
    printLimit("GL_MAX_TEXTURE_COORDS:\t", GL_MAX_TEXTURE_COORDS);
    printProgramLimit("GL_MAX_PROGRAM_NATIVE_INSTRUCTIONS_ARB:\t\t", GL_MAX_PROGRAM_NATIVE_INSTRUCTIONS_ARB);
    printLimit("GL_MAX_MODELVIEW_STACK_DEPTH:\t", GL_MAX_MODELVIEW_STACK_DEPTH);
    printLimit("GL_MAX_VARYING_COMPONENTS_EXT: ", GL_MAX_VARYING_COMPONENTS_EXT);
    printLimit("GL_MAX_VERTEX_UNIFORM_COMPONENTS: ", GL_MAX_VERTEX_UNIFORM_COMPONENTS);
    printLimit("GL_MAX_FRAGMENT_UNIFORM_COMPONENTS: ", GL_MAX_FRAGMENT_UNIFORM_COMPONENTS);
}

/// Takes the current window off the screen now: GLUT itself would do it in its main loop.
void unmapCurrentWindow() {
    Display* display = glXGetCurrentDisplay();
    XWithdrawWindow(display, glXGetCurrentDrawable(), DefaultScreen(display));
    XSync(display, False);
}

}  // namespace

SystemManager& SystemManager::instance() {
    static SystemManager sm;
    return sm;
}

void SystemManager::initOpenGLContext(int width, int height, int posX, int posY, const char* title,
                                      bool checkCapabilities) {
    TARVOS_REQUIRE((title != NULL) && "the window has no title");
    if (!mGlutInitialised) {
        mGlutInitialised = true;
        if (glutGet(GLUT_INIT_STATE) == 0) {  // unless the application has done it
            int argc = 1;
            char argument[] = "dummy argument";
            char* argv[] = {argument, nullptr};
            glutInit(&argc, argv);
        }
        glutInitDisplayMode(GLUT_DOUBLE | GLUT_DEPTH);
        glutInitWindowPosition(posX, posY);
        glutInitWindowSize(width, height);
    }
    const int window = glutCreateWindow(title);
    glutSetWindow(window);
    glutDisplayFunc([] {});  // GLUT's main loop aborts on a window without a display callback
    glutHideWindow();
    unmapCurrentWindow();

    const GLenum result = glewInit();
    if (result != GLEW_OK) {
        report(std::cout, "ERROR: GLScene::initOpenGLContext(): " + textOf(glewGetErrorString(result)));
        std::exit(-1);
    }
    report(std::cout, "Using GLEW version: " + textOf(glewGetString(GLEW_VERSION)));
    if (checkCapabilities)
        checkGpu();
}

}  // namespace tarvos::core
