#include <GL/glew.h>
#include <tarvos/core/Contract.h>
#include <tarvos/core/Report.h>
#include <tarvos/core/SystemManager.h>
// GLEW comes first: it replaces the header of OpenGL that the others include.
#include <GL/freeglut.h>
#include <GL/glx.h>

#include <algorithm>
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
    if (!std::all_of(extensions.begin(), extensions.end(), glewIsSupported)) {
        report(std::cerr, complaint);
        std::exit(-1);
    }
}

/// Prints the first supported extension, if any.
void printSupport(std::initializer_list<const char*> extensions) {
    const auto* supported = std::find_if(extensions.begin(), extensions.end(), glewIsSupported);
    if (supported != extensions.end())
        report(std::cout, *supported);
}

std::string limitOf(GLenum limit) {
    GLint value = 0;
    glGetIntegerv(limit, &value);
    return std::to_string(value);
}

/// 0 if the driver has no assembly programs, and thus no entry point.
std::string programLimitOf(GLenum limit) {
    GLint value = 0;
    if (glGetProgramivARB != nullptr)
        glGetProgramivARB(GL_FRAGMENT_PROGRAM_ARB, limit, &value);
    return std::to_string(value);
}

void checkGpu() {
    report(std::cout, "GPU Vendor: " + textOf(glGetString(GL_VENDOR)));
    requireSupport(
        {"GL_ARB_fragment_shader", "GL_ARB_vertex_shader", "GL_ARB_shader_objects", "GL_ARB_shading_language_100"},
        "ERROR: GPU does not support required Shader capabilities.");
    requireSupport({"GL_EXT_framebuffer_object"},
                   "ERROR: Framebuffer Objects (GL_EXT_framebuffer_object) are not supported.");
    requireSupport({"GL_ARB_texture_rectangle"}, "GL_ARB_texture_rectangle is not supported");

    const std::string size = limitOf(GL_MAX_RECTANGLE_TEXTURE_SIZE_ARB);
    report(std::cout, "GL_TEXTURE_RECTANGLE_ARB\nGL_MAX_RECTANGLE_TEXTURE_SIZE_EXT: " + size + "x" + size);
    printSupport({"GL_ARB_vertex_buffer_object"});
    printSupport({"GL_EXT_geometry_shader4", "GL_NV_geometry_shader4"});

    report(std::cout, "GL_MAX_DRAW_BUFFERS:\t" + limitOf(GL_MAX_DRAW_BUFFERS));
    report(std::cout, "GL_MAX_TEXTURE_UNITS:\t\t" + limitOf(GL_MAX_TEXTURE_UNITS));
    report(std::cout, "GL_MAX_TEXTURE_COORDS:\t" + limitOf(GL_MAX_TEXTURE_COORDS));
    report(std::cout,
           "GL_MAX_PROGRAM_NATIVE_INSTRUCTIONS_ARB:\t\t" + programLimitOf(GL_MAX_PROGRAM_NATIVE_INSTRUCTIONS_ARB));
    report(std::cout, "GL_MAX_MODELVIEW_STACK_DEPTH:\t" + limitOf(GL_MAX_MODELVIEW_STACK_DEPTH));
    report(std::cout, "GL_MAX_VARYING_COMPONENTS_EXT: " + limitOf(GL_MAX_VARYING_COMPONENTS_EXT));
    report(std::cout, "GL_MAX_VERTEX_UNIFORM_COMPONENTS: " + limitOf(GL_MAX_VERTEX_UNIFORM_COMPONENTS));
    report(std::cout, "GL_MAX_FRAGMENT_UNIFORM_COMPONENTS: " + limitOf(GL_MAX_FRAGMENT_UNIFORM_COMPONENTS));
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
    glutCreateWindow(title);
    glutDisplayFunc([] {});  // GLUT's main loop aborts on a window without a display callback
    glutHideWindow();
    // Off the screen now: GLUT itself would do it in its main loop.
    Display* display = glXGetCurrentDisplay();
    XWithdrawWindow(display, glXGetCurrentDrawable(), DefaultScreen(display));
    XSync(display, False);

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
