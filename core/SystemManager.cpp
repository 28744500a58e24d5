#include "core/SystemManager.h"

#include "core/Contract.h"
#include "core/Report.h"

#include <GL/glew.h>
// GLEW comes first: it replaces the header of OpenGL that the others include.
#include <GL/freeglut.h>
#include <GL/glx.h>

#include <cstdlib>
#include <initializer_list>
#include <iostream>
#include <string>

namespace tarvos::core {

namespace {

void say(const std::string& line) {
    report(std::cout, line + "\n");
}

std::string textOf(const GLubyte* text) {
    return text != nullptr ? reinterpret_cast<const char*>(text) : "";
}

[[noreturn]] void endProcess() {
    std::exit(-1);
}

void requireSupport(std::initializer_list<const char*> extensions, const char* complaint) {
    for (const char* extension : extensions) {
        if (!glewIsSupported(extension)) {
            report(std::cerr, std::string(complaint) + "\n");
            endProcess();
        }
    }
}

/// Tells the first of @p extensions that is supported, if any.
void tellSupport(std::initializer_list<const char*> extensions) {
    for (const char* extension : extensions) {
        if (glewIsSupported(extension)) {
            say(extension);
            return;
        }
    }
}

void tellLimit(const char* label, GLenum limit) {
    GLint value = 0;
    glGetIntegerv(limit, &value);
    say(label + std::to_string(value));
}

/// The limit of assembly programs; 0 where the driver has none and so lacks the entry point.
void tellProgramLimit(const char* label, GLenum limit) {
    GLint value = 0;
    if (glGetProgramivARB != nullptr)
        glGetProgramivARB(GL_FRAGMENT_PROGRAM_ARB, limit, &value);
    say(label + std::to_string(value));
}

void checkGpu() {
    say("GPU Vendor: " + textOf(glGetString(GL_VENDOR)));
    requireSupport(
        {"GL_ARB_fragment_shader", "GL_ARB_vertex_shader", "GL_ARB_shader_objects", "GL_ARB_shading_language_100"},
        "ERROR: GPU does not support required Shader capabilities.");
    requireSupport({"GL_EXT_framebuffer_object"},
                   "ERROR: Framebuffer Objects (GL_EXT_framebuffer_object) are not supported.");
    requireSupport({"GL_ARB_texture_rectangle"}, "GL_ARB_texture_rectangle is not supported");

    GLint size = 0;
    glGetIntegerv(GL_MAX_RECTANGLE_TEXTURE_SIZE_ARB, &size);
    say("GL_TEXTURE_RECTANGLE_ARB\nGL_MAX_RECTANGLE_TEXTURE_SIZE_EXT: " + std::to_string(size) + "x" +
        std::to_string(size));
    tellSupport({"GL_ARB_vertex_buffer_object"});
    tellSupport({"GL_EXT_geometry_shader4", "GL_NV_geometry_shader4"});

    tellLimit("GL_MAX_DRAW_BUFFERS:\t", GL_MAX_DRAW_BUFFERS);
    tellLimit("GL_MAX_TEXTURE_UNITS:\t\t", GL_MAX_TEXTURE_UNITS);
    tellLimit("GL_MAX_TEXTURE_COORDS:\t", GL_MAX_TEXTURE_COORDS);
    tellProgramLimit("GL_MAX_PROGRAM_NATIVE_INSTRUCTIONS_ARB:\t\t", GL_MAX_PROGRAM_NATIVE_INSTRUCTIONS_ARB);
    tellLimit("GL_MAX_MODELVIEW_STACK_DEPTH:\t", GL_MAX_MODELVIEW_STACK_DEPTH);
    tellLimit("GL_MAX_VARYING_COMPONENTS_EXT: ", GL_MAX_VARYING_COMPONENTS_EXT);
    tellLimit("GL_MAX_VERTEX_UNIFORM_COMPONENTS: ", GL_MAX_VERTEX_UNIFORM_COMPONENTS);
    tellLimit("GL_MAX_FRAGMENT_UNIFORM_COMPONENTS: ", GL_MAX_FRAGMENT_UNIFORM_COMPONENTS);
}

/// Takes the current window off the screen now: GLUT would wait for its main loop.
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
        if (glutGet(GLUT_INIT_STATE) == 0) {  // the application may have done it
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
    glutDisplayFunc([] {});  // the main loop of an application ends the process for a window without
    glutHideWindow();
    unmapCurrentWindow();

    const GLenum result = glewInit();
    if (result != GLEW_OK) {
        say("ERROR: GLScene::initOpenGLContext(): " + textOf(glewGetErrorString(result)));
        endProcess();
    }
    say("Using GLEW version: " + textOf(glewGetString(GLEW_VERSION)));
    if (checkCapabilities)
        checkGpu();
}

}  // namespace tarvos::core
