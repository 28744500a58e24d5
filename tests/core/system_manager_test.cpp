#include "support/Program.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>

#include <regex>

namespace {

const std::string GLEW = "Using GLEW version: [^\n]+\n";
const std::string VENDOR = GLEW + "GPU Vendor: [^\n]+\n";
const std::string RECTANGLE = VENDOR +
                              "GL_TEXTURE_RECTANGLE_ARB\n"
                              "GL_MAX_RECTANGLE_TEXTURE_SIZE_EXT: [1-9][0-9]*x[1-9][0-9]*\n";
const std::string BUFFERS = RECTANGLE + "GL_ARB_vertex_buffer_object\n";
/// The lines of the limits; # stands for a number.
std::string limits(const std::string& instructions = "#") {
    const std::string lines =
        "GL_MAX_DRAW_BUFFERS:\t#\nGL_MAX_TEXTURE_UNITS:\t\t#\nGL_MAX_TEXTURE_COORDS:\t#\n"
        "GL_MAX_PROGRAM_NATIVE_INSTRUCTIONS_ARB:\t\t" +
        instructions +
        "\nGL_MAX_MODELVIEW_STACK_DEPTH:\t#\nGL_MAX_VARYING_COMPONENTS_EXT: #\n"
        "GL_MAX_VERTEX_UNIFORM_COMPONENTS: #\nGL_MAX_FRAGMENT_UNIFORM_COMPONENTS: #\n";
    return std::regex_replace(lines, std::regex("#"), "[1-9][0-9]*");
}

struct Case {
    std::string name, environment, actions;
    int status;
    std::string output, errors;

    friend std::ostream& operator<<(std::ostream& stream, const Case& one) { return stream << one.actions; }
};

const std::string GEOMETRY = "GL_EXT_geometry_shader4 GL_NV_geometry_shader4";
const std::string NO_SHADERS = "ERROR: GPU does not support required Shader capabilities.\n";
const std::string UNSEEN = "window 1: 64x48 at 5, 6\n  Map State: IsUnMapped\n";
const Case CASES[] = {
    {"NoShadersNotAsked", "WITHHELD=GL_ARB_vertex_shader", "context window", 0, GLEW + UNSEEN, ""},
    {"Twice", "", "context wider window", 0, GLEW + GLEW + "window 2: 64x48 at 5, 6\n  Map State: IsUnMapped\n", ""},
    {"ApplicationsOwnGlut", "", "glut context loop", 0, GLEW + "main loop left\n", ""},
    {"Plugin", "", "context plugin", 0, GLEW + GLEW, ""},
    {"NoGlew", "WITHHELD=glewInit", "checks", 255, "ERROR: GLScene::initOpenGLContext\\(\\): Missing GL version\n", ""},
    {"NoFragmentShader", "WITHHELD=GL_ARB_fragment_shader", "checks", 255, VENDOR, NO_SHADERS},
    {"NoVertexShaderInMesa", "MESA_EXTENSION_OVERRIDE=-GL_ARB_vertex_shader", "checks", 255, VENDOR, NO_SHADERS},
    {"NoFramebufferObject", "WITHHELD=GL_EXT_framebuffer_object", "checks", 255, VENDOR,
     "ERROR: Framebuffer Objects (GL_EXT_framebuffer_object) are not supported.\n"},
    {"NoTextureRectangleInMesa", "MESA_EXTENSION_OVERRIDE=-GL_ARB_texture_rectangle", "checks", 255, VENDOR,
     "GL_ARB_texture_rectangle is not supported\n"},
    {"NoVertexBuffers", "WITHHELD='GL_ARB_vertex_buffer_object " + GEOMETRY + "'", "checks", 0, RECTANGLE + limits(),
     ""},
    {"NoGeometryShader", "WITHHELD='" + GEOMETRY + "'", "checks", 0, BUFFERS + limits(), ""},
    {"ExtGeometryShader", "GRANTED='" + GEOMETRY + "'", "checks", 0, BUFFERS + "GL_EXT_geometry_shader4\n" + limits(),
     ""},
    {"NvGeometryShader", "WITHHELD=GL_EXT_geometry_shader4 GRANTED=GL_NV_geometry_shader4", "checks", 0,
     BUFFERS + "GL_NV_geometry_shader4\n" + limits(), ""},
    {"NoProgramLimits", "WITHHELD='glGetProgramivARB " + GEOMETRY + "'", "checks", 0, BUFFERS + limits("0"), ""}};

class SystemManagerTest : public testing::TestWithParam<Case> {};

TEST_P(SystemManagerTest, SaysAndDoesWhatTheCaseAsks) {
    const TemporaryDirectory directory;
    const ProgramRun run = ProgramRun::of(GetParam().environment + " '" OPENGL_PROBE "' " + GetParam().actions);
    EXPECT_EQ(run.status, GetParam().status);
    EXPECT_THAT(run.output, testing::MatchesRegex(GetParam().output));
    EXPECT_EQ(run.errors, GetParam().errors);
}

INSTANTIATE_TEST_SUITE_P(, SystemManagerTest, testing::ValuesIn(CASES),
                         [](const auto& test) { return test.param.name; });

}  // namespace
