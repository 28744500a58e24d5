#include "support/Program.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iterator>
#include <regex>
#include <sys/wait.h>

namespace {

const std::string GLEW = "Using GLEW version: [^\n]+\n";
const std::string VENDOR = GLEW + "GPU Vendor: [^\n]+\n";
const std::string RECTANGLE = VENDOR +
                              "GL_TEXTURE_RECTANGLE_ARB\n"
                              "GL_MAX_RECTANGLE_TEXTURE_SIZE_EXT: [1-9][0-9]*x[1-9][0-9]*\n";
const std::string BUFFERS = RECTANGLE + "GL_ARB_vertex_buffer_object\n";
const std::string WINDOW = "window 1: 64x48 at 5\n";
/// The lines of the limits, and of the probe; # stands for a number.
std::string limits(const std::string& instructions = "#") {
    const std::string lines =
        "GL_MAX_DRAW_BUFFERS:\t#\nGL_MAX_TEXTURE_UNITS:\t\t#\nGL_MAX_TEXTURE_COORDS:\t#\n"
        "GL_MAX_PROGRAM_NATIVE_INSTRUCTIONS_ARB:\t\t" +
        instructions +
        "\nGL_MAX_MODELVIEW_STACK_DEPTH:\t#\nGL_MAX_VARYING_COMPONENTS_EXT: #\n"
        "GL_MAX_VERTEX_UNIFORM_COMPONENTS: #\nGL_MAX_FRAGMENT_UNIFORM_COMPONENTS: #\n" +
        WINDOW;
    return std::regex_replace(lines, std::regex("#"), "[1-9][0-9]*");
}

TEST(SystemManagerTest, TellsAndChecksTheGpu) {
    const std::string geometry = "GL_EXT_geometry_shader4 GL_NV_geometry_shader4";
    const std::string shaders = "ERROR: GPU does not support required Shader capabilities.\n";
    const struct {
        std::string environment, arguments;
        int status;
        std::string output, errors;
    } cases[] = {{"WITHHELD=GL_ARB_vertex_shader", "1 0", 0, GLEW + WINDOW, ""},
                 {"", "2 0", 0, GLEW + GLEW + "window 2: 64x48 at 5\n", ""},
                 {"WITHHELD=glewInit", "1 1", 255, "ERROR: GLScene::initOpenGLContext\\(\\): Missing GL version\n", ""},
                 {"WITHHELD=GL_ARB_fragment_shader", "1 1", 255, VENDOR, shaders},
                 {"MESA_EXTENSION_OVERRIDE=-GL_ARB_vertex_shader", "1 1", 255, VENDOR, shaders},
                 {"WITHHELD=GL_ARB_shader_objects", "1 1", 255, VENDOR, shaders},
                 {"WITHHELD=GL_ARB_shading_language_100", "1 1", 255, VENDOR, shaders},
                 {"WITHHELD=GL_EXT_framebuffer_object", "1 1", 255, VENDOR,
                  "ERROR: Framebuffer Objects (GL_EXT_framebuffer_object) are not supported.\n"},
                 {"MESA_EXTENSION_OVERRIDE=-GL_ARB_texture_rectangle", "1 1", 255, VENDOR,
                  "GL_ARB_texture_rectangle is not supported\n"},
                 {"WITHHELD='GL_ARB_vertex_buffer_object " + geometry + "'", "1 1", 0, RECTANGLE + limits(), ""},
                 {"WITHHELD='" + geometry + "'", "1 1", 0, BUFFERS + limits(), ""},
                 {"GRANTED='" + geometry + "'", "1 1", 0, BUFFERS + "GL_EXT_geometry_shader4\n" + limits(), ""},
                 {"WITHHELD=GL_EXT_geometry_shader4 GRANTED=GL_NV_geometry_shader4", "1 1", 0,
                  BUFFERS + "GL_NV_geometry_shader4\n" + limits(), ""},
                 {"WITHHELD='glGetProgramivARB " + geometry + "'", "1 1", 0, BUFFERS + limits("0"), ""}};
    const TemporaryDirectory directory;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.environment);
        const ProgramRun run = ProgramRun::of(c.environment + " '" OPENGL_PROBE "' " + c.arguments);
        EXPECT_EQ(run.status, c.status);
        EXPECT_THAT(run.output, testing::MatchesRegex(c.output));
        EXPECT_EQ(run.errors, c.errors);
    }
}

}  // namespace
