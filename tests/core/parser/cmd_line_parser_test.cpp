#include "support/Output.h"

#include <tarvos/core/parser/CmdLineParser.h>

#include <locale>

using tarvos::core::parser::CmdLineParser;

namespace {

/// A parser of words that outlive it.
CmdLineParser parserOf(const std::vector<const char*>& words) {
    return {static_cast<int>(words.size()), const_cast<char**>(words.data())};
}

const std::string HEAD =
    "Command line options:\n"
    "Option              Default             Current             Description         \n"
    "--------------------------------------------------------------------------------\n";
const std::string HELP = "-help               false               false               display a help message\n";
const std::string LEGEND = "\n(+): mandatory argument\n(*): argument was set on commandline\n\n";

TEST(CmdLineParserTest, ConvertsWhateverTheGlobalLocale) {
    struct Comma : std::numpunct<char> {
        char do_decimal_point() const override { return ','; }
    };
    CmdLineParser parser = parserOf({});
    for (const char* text :
         {"12", "-3", "12abc", " 12", " \t3.7", "99999999999", "3.5", "", "-", "1", "0", "two words"})
        parser.addOption(text, "", text, false);
    const std::locale previous = std::locale::global(std::locale(std::locale::classic(), new Comma));
    EXPECT_EQ(parser.getValueDouble(" \t3.7"), 3.7) << "the beginning of the text";
    EXPECT_EQ(parser.value<double>("3.5"), 3.5) << "the whole text";
    EXPECT_EQ(parser.value<int>("-3"), -3);
    for (const char* text : {"12abc", " 12", " \t3.7", "99999999999", "3.5", ""})
        EXPECT_FALSE(parser.value<int>(text)) << text;
    EXPECT_FALSE(parser.value<unsigned int>("-3"));
    EXPECT_EQ(parser.value<unsigned char>("-"), '-') << "a character, as char is on some processors";
    EXPECT_EQ(parser.value<std::string>("two words"), "two words");
    EXPECT_EQ(parser.value<bool>("1"), true);
    EXPECT_EQ(parser.value<bool>("0"), false);
    for (const char* text : {"12", "", " 12"})
        EXPECT_FALSE(parser.value<bool>(text)) << text;
    std::locale::global(previous);
}

TEST(CmdLineParserTest, PrintsTheUsageTable) {
    const std::vector<const char*> words = {"app", "-frames", "50"};
    CmdLineParser parser = parserOf(words);
    EXPECT_EQ(captureStderr([&] { parser.printUsage("see the manual"); }), HEAD + HELP + LEGEND + "see the manual\n");
    parser.setAppDescription("Face tracking demo");
    parser.addOption("frames", "number of frames", "100", false);
    parser.parse();
    parser.addOption("config", "configuration file", "cfg.xml", true);
    parser.addOption("a-name-longer-than-its-field", "text", "", false);
    EXPECT_EQ(captureStderr([&] { parser.printUsage(""); }),
              "Face tracking demo\n" + HEAD + HELP +
                  "-frames          (*)100                 50                  number of frames    \n"
                  "-config       (+)   cfg.xml             cfg.xml             configuration file  \n"
                  "-a-name-longer-than-its-field" +
                  std::string(46, ' ') + "text                \n" + LEGEND);
}

TEST(CmdLineParserTest, Exits) {
    const std::string row = "-must         (+)   default             default             needed              \n";
    const std::string helped = "-help            (*)false               true                display a help message\n";
    const std::string noValue = "Warning: Option \"must\" requires an argument!! Value unchanged!!\n";
    const std::pair<std::vector<const char*>, std::string> cases[] = {
        {{"app", "-must"}, noValue},
        {{"app", "-help", "-must"}, noValue},
        {{"app", "-help"}, HEAD + helped + row + LEGEND},
        {{"app"}, "Warning: Option \"must\" must be set!!\n" + HEAD + HELP + row + LEGEND}};
    for (const auto& [words, output] : cases) {
        CmdLineParser parser = parserOf(words);
        parser.addOption("must", "needed", "default", true);
        ASSERT_EXIT(parser.parse(), testing::ExitedWithCode(1), testing::Eq(output));
    }
}

}  // namespace
