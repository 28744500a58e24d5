#include "support/Program.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iterator>
#include <sys/wait.h>

using testing::MatchesRegex;

namespace {

struct Case {
    std::string name, environment, arguments;
    int status;
    std::string output, errors;
};

const std::string GLEW = "Using GLEW version: [^\n]+\n";
const std::string VENDOR = GLEW + "GPU Vendor: [^\n]+\n";
const std::string RECTANGLE = VENDOR +
                              "GL_TEXTURE_RECTANGLE_ARB\n"
                              "GL_MAX_RECTANGLE_TEXTURE_SIZE_EXT: [1-9][0-9]*x[1-9][0-9]*\n";
const std::string BUFFERS = RECTANGLE + "GL_ARB_vertex_buffer_object\n";
std::string limits(const std::string& instructions = "[1-9][0-9]*") {
    return "GL_MAX_DRAW_BUFFERS:\t[1-9][0-9]*\n"
           "GL_MAX_TEXTURE_UNITS:\t\t[1-9][0-9]*\n"
           "GL_MAX_TEXTURE_COORDS:\t[1-9][0-9]*\n"
           "GL_MAX_PROGRAM_NATIVE_INSTRUCTIONS_ARB:\t\t" +
           instructions +
           "\n"
           "GL_MAX_MODELVIEW_STACK_DEPTH:\t[1-9][0-9]*\n"
           "GL_MAX_VARYING_COMPONENTS_EXT: [1-9][0-9]*\n"
           "GL_MAX_VERTEX_UNIFORM_COMPONENTS: [1-9][0-9]*\n"
           "GL_MAX_FRAGMENT_UNIFORM_COMPONENTS: [1-9][0-9]*\n";
}
const std::string FIRST_WINDOW = "window 1: 64x48 at 5\n";
const std::string NO_GEOMETRY = "GL_EXT_geometry_shader4 GL_NV_geometry_shader4 ";
const std::string NO_SHADERS = "ERROR: GPU does not support required Shader capabilities.\n";
const std::string NO_FRAMEBUFFER =
    "ERROR: Framebuffer Objects (GL_EXT_framebuffer_object) are not supported.\n";
const std::string NO_RECTANGLE = "GL_ARB_texture_rectangle is not supported\n";

class SystemManagerTest : public testing::TestWithParam<Case> {};

TEST_P(SystemManagerTest, TellsAndChecksTheGpu) {
    const TemporaryDirectory directory;
    const Case& c = GetParam();
    const ProgramRun run = ProgramRun::of(c.environment + " '" OPENGL_PROBE "' " + c.arguments);
    EXPECT_EQ(run.status, c.status);
    EXPECT_THAT(run.output, MatchesRegex(c.output));
    EXPECT_EQ(run.errors, c.errors);
}

INSTANTIATE_TEST_SUITE_P(
    Gpus, SystemManagerTest,
    testing::Values(
        Case{"Unchecked", "WITHHELD='GL_ARB_vertex_shader'", "1 0", 0, GLEW + FIRST_WINDOW, ""},
        Case{"SecondCall", "", "2 0", 0, GLEW + GLEW + "window 2: 64x48 at 5\n", ""},
        Case{"NoGlew", "WITHHELD=glewInit", "1 1", 255,
             "ERROR: GLScene::initOpenGLContext\\(\\): Missing GL version\n", ""},
        Case{"NoFragmentShader", "WITHHELD=GL_ARB_fragment_shader", "1 1", 255, VENDOR, NO_SHADERS},
        Case{"NoVertexShader", "MESA_EXTENSION_OVERRIDE=-GL_ARB_vertex_shader", "1 1", 255, VENDOR,
             NO_SHADERS},
        Case{"NoShaderObjects", "WITHHELD=GL_ARB_shader_objects", "1 1", 255, VENDOR, NO_SHADERS},
        Case{"NoShadingLanguage", "WITHHELD=GL_ARB_shading_language_100", "1 1", 255, VENDOR, NO_SHADERS},
        Case{"NoFramebuffer", "WITHHELD=GL_EXT_framebuffer_object", "1 1", 255, VENDOR, NO_FRAMEBUFFER},
        Case{"NoRectangle", "MESA_EXTENSION_OVERRIDE=-GL_ARB_texture_rectangle", "1 1", 255, VENDOR,
             NO_RECTANGLE},
        Case{"NoBuffers", "WITHHELD='GL_ARB_vertex_buffer_object " + NO_GEOMETRY + "'", "1 1", 0,
             RECTANGLE + limits() + FIRST_WINDOW, ""},
        Case{"NoGeometry", "WITHHELD='" + NO_GEOMETRY + "'", "1 1", 0, BUFFERS + limits() + FIRST_WINDOW, ""},
        Case{"GeometryExt", "GRANTED='" + NO_GEOMETRY + "'", "1 1", 0,
             BUFFERS + "GL_EXT_geometry_shader4\n" + limits() + FIRST_WINDOW, ""},
        Case{"GeometryNv", "WITHHELD=GL_EXT_geometry_shader4 GRANTED=GL_NV_geometry_shader4", "1 1", 0,
             BUFFERS + "GL_NV_geometry_shader4\n" + limits() + FIRST_WINDOW, ""},
        Case{"NoPrograms", "WITHHELD='glGetProgramivARB " + NO_GEOMETRY + "'", "1 1", 0,
             BUFFERS + limits("0") + FIRST_WINDOW, ""}),
    [](const auto& gpu) { return gpu.param.name; });

}  // namespace
