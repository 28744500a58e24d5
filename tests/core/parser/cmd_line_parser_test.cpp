#include "core/parser/CmdLineParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using tarvos::core::parser::CmdLineParser;

namespace {

class CmdLineParserTest : public testing::Test {
protected:
    CmdLineParser parserOf(std::vector<std::string> words) {
        mWords = std::move(words);
        mPointers.clear();
        for (std::string& word : mWords) mPointers.push_back(word.data());
        return {static_cast<int>(mPointers.size()), mPointers.data()};
    }

    static std::string usage(const CmdLineParser& parser, const std::string& extra) {
        testing::internal::CaptureStderr();
        parser.printUsage(extra);
        return testing::internal::GetCapturedStderr();
    }

private:
    std::vector<std::string> mWords;
    std::vector<char*> mPointers;
};

const std::string HEAD =
    "Command line options:\n"
    "Option              Default             Current             Description         \n"
    "--------------------------------------------------------------------------------\n";
const std::string HELP = "-help               false               false               display a help message\n";
const std::string LEGEND = "\n(+): mandatory argument\n(*): argument was set on commandline\n\n";

TEST_F(CmdLineParserTest, ReadsWords) {
    CmdLineParser parser =
        parserOf({"-app", "positional", "-", "--mirror", "-name=value", "-unknown", "-mirror", "-mirror", "-offset",
                  "-3", "-name", "first", "-name", "second", "-last", "-mirror"});
    for (const char* flag : {"mirror", "app", "positional"}) parser.addFlag(flag, "");
    for (const char* option : {"offset", "name", "last", "left"})
        parser.addOption(option, "", "default", option == std::string("name"));
    EXPECT_EQ(parser.getValue("mirror") + parser.getValue("name"), "0default");
    EXPECT_FALSE(parser.isSet("mirror"));
    testing::internal::CaptureStderr();
    parser.parse();
    parser.parse();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_TRUE(parser.isSet("app")) << "the program's own name is a word like any other";
    EXPECT_FALSE(parser.isSet("positional") || parser.isSet("left") || parser.isSet("unknown"));
    EXPECT_EQ(parser.getValue("mirror") + parser.getValue("left") + parser.getValue("unknown"), "1default");
    EXPECT_EQ(parser.getValueInt("offset"), -3);
    EXPECT_EQ(parser.getValue("name"), "second");
    EXPECT_EQ(parser.getValue("last"), "-mirror");
}

TEST_F(CmdLineParserTest, ServesEveryRecordOfAName) {
    CmdLineParser parser = parserOf({"app", "-both", "word", "-twice", "one", "two", "-", "dash"});
    parser.addFlag("both", "");
    for (const char* option : {"both", "twice", "twice", ""}) parser.addOption(option, "", "", false);
    parser.parse();
    EXPECT_EQ(parser.getValue("both"), "1") << "flags are found first";
    EXPECT_EQ(parser.getValue("twice"), "one");
    EXPECT_THAT(usage(parser, ""), testing::HasSubstr("-twice           (*)                    two "));
}

TEST_F(CmdLineParserTest, ConvertsLikeAStream) {
    CmdLineParser parser = parserOf({"app"});
    for (const char* text : {"12abc", " \t3.7", "1", "0", "abc"}) parser.addOption(text, "", text, false);
    EXPECT_EQ(parser.getValueInt("12abc"), 12);
    EXPECT_EQ(parser.getValueInt(" \t3.7"), 3);
    EXPECT_EQ(parser.getValueDouble(" \t3.7"), 3.7);
    EXPECT_EQ(parser.getValueInt("abc"), 0);
    EXPECT_TRUE(parser.getValueBool("1") && parser.get<bool>("1"));
    EXPECT_FALSE(parser.getValueBool("12abc") || parser.getValueBool("0") || parser.get<bool>("0"));
}

TEST_F(CmdLineParserTest, PrintsTheUsageTable) {
    CmdLineParser parser = parserOf({"app", "-frames", "50"});
    EXPECT_EQ(usage(parser, "see the manual"), HEAD + HELP + LEGEND + "see the manual\n");
    parser.setAppDescription("Face tracking demo");
    parser.addOption("frames", "number of frames", "100", false);
    parser.parse();
    parser.addOption("config", "configuration file", "cfg.xml", true);
    parser.addOption("a-name-longer-than-its-field", "text", "", false);
    EXPECT_EQ(usage(parser, ""),
              "Face tracking demo\n" + HEAD + HELP +
                  "-frames          (*)100                 50                  number of frames    \n"
                  "-config       (+)   cfg.xml             cfg.xml             configuration file  \n"
                  "-a-name-longer-than-its-field" +
                  std::string(46, ' ') + "text                \n" + LEGEND);
}

TEST_F(CmdLineParserTest, EndsTheProcess) {
    const std::string row = "-must         (+)                                           needed              \n";
    const std::string helped = "-help            (*)false               true                display a help message\n";
    const std::string noValue = "Warning: Option \"must\" requires an argument!! Value unchanged!!\n";
    const std::pair<std::vector<std::string>, std::string> cases[] = {
        {{"app", "-must"}, noValue},
        {{"app", "-help", "-must"}, noValue},
        {{"app", "-help"}, HEAD + helped + row + LEGEND},
        {{"app"}, "Warning: Option \"must\" must be set!!\n" + HEAD + HELP + row + LEGEND}};
    for (const auto& [words, output] : cases) {
        CmdLineParser parser = parserOf(words);
        parser.addOption("must", "needed", "", true);
        EXPECT_EXIT(parser.parse(), testing::ExitedWithCode(1), testing::Eq(output));
    }
}

}  // namespace
