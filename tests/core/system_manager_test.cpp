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

struct Gpu {
    std::string name, environment, arguments;
    int status;
    std::string output, errors;

    friend std::ostream& operator<<(std::ostream& stream, const Gpu& gpu) { return stream << gpu.environment; }
};

const std::string GEOMETRY = "GL_EXT_geometry_shader4 GL_NV_geometry_shader4";
const std::string NO_SHADERS = "ERROR: GPU does not support required Shader capabilities.\n";
const Gpu GPUS[] = {
    {"NoShadersNotAsked", "WITHHELD=GL_ARB_vertex_shader", "1 0", 0, GLEW + WINDOW, ""},
    {"Twice", "", "2 0", 0, GLEW + GLEW + "window 2: 64x48 at 5\n", ""},
    {"NoGlew", "WITHHELD=glewInit", "1 1", 255, "ERROR: GLScene::initOpenGLContext\\(\\): Missing GL version\n", ""},
    {"NoFragmentShader", "WITHHELD=GL_ARB_fragment_shader", "1 1", 255, VENDOR, NO_SHADERS},
    {"NoVertexShaderInMesa", "MESA_EXTENSION_OVERRIDE=-GL_ARB_vertex_shader", "1 1", 255, VENDOR, NO_SHADERS},
    {"NoFramebufferObject", "WITHHELD=GL_EXT_framebuffer_object", "1 1", 255, VENDOR,
     "ERROR: Framebuffer Objects (GL_EXT_framebuffer_object) are not supported.\n"},
    {"NoTextureRectangleInMesa", "MESA_EXTENSION_OVERRIDE=-GL_ARB_texture_rectangle", "1 1", 255, VENDOR,
     "GL_ARB_texture_rectangle is not supported\n"},
    {"NoVertexBuffers", "WITHHELD='GL_ARB_vertex_buffer_object " + GEOMETRY + "'", "1 1", 0, RECTANGLE + limits(), ""},
    {"NoGeometryShader", "WITHHELD='" + GEOMETRY + "'", "1 1", 0, BUFFERS + limits(), ""},
    {"ExtGeometryShader", "GRANTED='" + GEOMETRY + "'", "1 1", 0, BUFFERS + "GL_EXT_geometry_shader4\n" + limits(), ""},
    {"NvGeometryShader", "WITHHELD=GL_EXT_geometry_shader4 GRANTED=GL_NV_geometry_shader4", "1 1", 0,
     BUFFERS + "GL_NV_geometry_shader4\n" + limits(), ""},
    {"NoProgramLimits", "WITHHELD='glGetProgramivARB " + GEOMETRY + "'", "1 1", 0, BUFFERS + limits("0"), ""}};

class SystemManagerTest : public testing::TestWithParam<Gpu> {
protected:
    static ProgramRun probe(const std::string& arguments, const std::string& environment = "") {
        return ProgramRun::of(environment + " '" OPENGL_PROBE "' " + arguments);
    }

    const TemporaryDirectory directory;
};

TEST_P(SystemManagerTest, TellsAndChecksTheGpu) {
    const ProgramRun run = probe(GetParam().arguments, GetParam().environment);
    EXPECT_EQ(run.status, GetParam().status);
    EXPECT_THAT(run.output, testing::MatchesRegex(GetParam().output));
    EXPECT_EQ(run.errors, GetParam().errors);
}

INSTANTIATE_TEST_SUITE_P(, SystemManagerTest, testing::ValuesIn(GPUS),
                         [](const auto& test) { return test.param.name; });

TEST_F(SystemManagerTest, ItsWindowIsNotOnTheScreen) {
    const ProgramRun run = probe("1 0 window");
    EXPECT_THAT(run.output, testing::HasSubstr("Map State: IsUnMapped\n")) << "found by its title";
}

TEST_F(SystemManagerTest, ServesApplicationsThatUseGlutThemselves) {
    const ProgramRun run = probe("1 0 own loop");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.output, testing::EndsWith("main loop left\n"));
    EXPECT_EQ(run.errors, "");
}

TEST_F(SystemManagerTest, IsOneForExecutableAndPlugin) {
    const ProgramRun run = probe("1 0 plugin");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.output, testing::MatchesRegex(GLEW + WINDOW + GLEW));
    EXPECT_EQ(run.errors, "");
}

}  // namespace
