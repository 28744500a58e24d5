#include "core/SystemManager.h"

#include "core/Contract.h"

#include <GL/glew.h>
// GLEW comes first: it replaces the header of OpenGL that GLUT includes.
#include <GL/glut.h>

#include <cstdlib>
#include <initializer_list>
#include <iostream>

namespace tarvos::core {

namespace {

[[noreturn]] void endProcess() {
    std::exit(-1);
}

void requireSupport(std::initializer_list<const char*> extensions, const char* complaint) {
    for (const char* extension : extensions) {
        if (!glewIsSupported(extension)) {
            std::cerr << complaint << std::endl;
            endProcess();
        }
    }
}

/// Tells the first of @p extensions that is supported, if any.
void tellSupport(std::initializer_list<const char*> extensions) {
    for (const char* extension : extensions) {
        if (glewIsSupported(extension)) {
            std::cout << extension << std::endl;
            return;
        }
    }
}

void tellLimit(const char* label, GLenum limit) {
    GLint value = 0;
    glGetIntegerv(limit, &value);
    std::cout << label << value << std::endl;
}

/// The limit of assembly programs; 0 where the driver has none and so lacks the entry point.
void tellProgramLimit(const char* label, GLenum limit) {
    GLint value = 0;
    if (glGetProgramivARB != nullptr)
        glGetProgramivARB(GL_FRAGMENT_PROGRAM_ARB, limit, &value);
    std::cout << label << value << std::endl;
}

void checkGpu() {
    std::cout << "GPU Vendor: " << glGetString(GL_VENDOR) << std::endl;
    requireSupport(
        {"GL_ARB_fragment_shader", "GL_ARB_vertex_shader", "GL_ARB_shader_objects", "GL_ARB_shading_language_100"},
        "ERROR: GPU does not support required Shader capabilities.");
    requireSupport({"GL_EXT_framebuffer_object"},
                   "ERROR: Framebuffer Objects (GL_EXT_framebuffer_object) are not supported.");
    requireSupport({"GL_ARB_texture_rectangle"}, "GL_ARB_texture_rectangle is not supported");

    GLint size = 0;
    glGetIntegerv(GL_MAX_RECTANGLE_TEXTURE_SIZE_ARB, &size);
    std::cout << "GL_TEXTURE_RECTANGLE_ARB\n";
    std::cout << "GL_MAX_RECTANGLE_TEXTURE_SIZE_EXT: " << size << "x" << size << std::endl;
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

}  // namespace

void SystemManager::initOpenGLContext(int width, int height, int posX, int posY, const char* title,
                                      bool checkCapabilities) {
    TARVOS_REQUIRE((title != NULL) && "the window has no title");
    if (!mGlutInitialised) {
        mGlutInitialised = true;
        int argc = 1;
        char argument[] = "dummy argument";
        char* argv[] = {argument, nullptr};
        glutInit(&argc, argv);
        glutInitDisplayMode(GLUT_DOUBLE | GLUT_DEPTH);
        glutInitWindowPosition(posX, posY);
        glutInitWindowSize(width, height);
    }
    const int window = glutCreateWindow(title);
    glutSetWindow(window);
    glutHideWindow();

    const GLenum result = glewInit();
    if (result != GLEW_OK) {
        std::cout << "ERROR: GLScene::initOpenGLContext(): " << glewGetErrorString(result) << std::endl;
        endProcess();
    }
    std::cout << "Using GLEW version: " << glewGetString(GLEW_VERSION) << std::endl;
    if (checkCapabilities)
        checkGpu();
}

}  // namespace tarvos::core
