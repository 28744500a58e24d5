#include "core/parser/CmdLineParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iomanip>
#include <iostream>

using tarvos::core::parser::CmdLineParser;

namespace {

/// A command line that lives as long as the test.
class CmdLineParserTest : public testing::Test {
protected:
    CmdLineParser parserOf(std::vector<std::string> words) {
        mWords = std::move(words);
        mPointers.clear();
        for (std::string& word : mWords)
            mPointers.push_back(word.data());
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

const std::string BUILT_IN_TABLE =
    "Command line options:\n"
    "Option              Default             Current             Description         \n"
    "--------------------------------------------------------------------------------\n"
    "-help               false               false               display a help message\n";
const std::string LEGEND = "\n(+): mandatory argument\n(*): argument was set on commandline\n\n";

TEST_F(CmdLineParserTest, DefaultsHoldUntilParsedAndAfter) {
    CmdLineParser parser = parserOf({"app"});
    parser.addOption("scale", "", "2.5", false);
    parser.addFlag("mirror", "");
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(parser.getValueDouble("scale"), 2.5);
        EXPECT_EQ(parser.getValue("mirror"), "0");
        EXPECT_FALSE(parser.isSet("scale") || parser.isSet("mirror") || parser.isSet("help"));
        EXPECT_EQ(parser.getValue("unknown"), "");
        EXPECT_FALSE(parser.getValueBool("unknown"));
        EXPECT_FALSE(parser.isSet("unknown"));
        parser.parse();
    }
}

TEST_F(CmdLineParserTest, ReadsWords) {
    CmdLineParser parser =
        parserOf({"-app", "positional", "-", "--mirror", "-name=value", "-unknown", "-mirror", "-mirror",
                  "-offset", "-3", "-name", "first", "-name", "second", "-last", "-mirror"});
    for (const char* flag : {"mirror", "app", "positional"})
        parser.addFlag(flag, "");
    for (const char* option : {"offset", "name", "last"})
        parser.addOption(option, "", "default", option == std::string("name"));
    testing::internal::CaptureStderr();
    parser.parse();
    parser.parse();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_TRUE(parser.isSet("app")) << "the program's own name is a word like any other";
    EXPECT_FALSE(parser.isSet("positional"));
    EXPECT_EQ(parser.getValue("mirror"), "1");
    EXPECT_EQ(parser.getValueInt("offset"), -3);
    EXPECT_EQ(parser.getValue("name"), "second");
    EXPECT_EQ(parser.getValue("last"), "-mirror");
}

TEST_F(CmdLineParserTest, ServesEveryRecordOfAName) {
    CmdLineParser parser = parserOf({"app", "-both", "word", "-twice", "one", "two", "-", "dash"});
    parser.addFlag("both", "");
    parser.addOption("both", "", "", false);
    parser.addOption("twice", "", "", false);
    parser.addOption("twice", "", "", false);
    parser.addOption("", "", "", false);
    parser.parse();
    EXPECT_EQ(parser.getValue("both"), "1") << "flags are found first";
    EXPECT_EQ(parser.getValue("twice"), "one");
    EXPECT_EQ(parser.getValue(""), "dash");
    EXPECT_EQ(usage(parser, ""),
              "Command line options:\n"
              "Option              Default             Current             Description         \n"
              "--------------------------------------------------------------------------------\n"
              "-help               false               false               display a help message\n"
              "-both            (*)false               true                                    \n"
              "-both            (*)                    word                                    \n"
              "-twice           (*)                    one                                     \n"
              "-twice           (*)                    two                                     \n"
              "-                (*)                    dash                                    \n" +
                  LEGEND);
}

TEST_F(CmdLineParserTest, ConvertsLikeAStream) {
    const struct {
        const char* text;
        int asInt;
        double asDouble;
        bool asBool, extracted;
    } cases[] = {{"12abc", 12, 12, false, true}, {"3.7", 3, 3.7, false, true}, {" \t-4", -4, -4, false, true},
                 {"1", 1, 1, true, true},        {"0", 0, 0, false, false},    {"01", 1, 1, false, true},
                 {"abc", 0, 0, false, false}};
    for (const auto& c : cases) {
        CmdLineParser parser = parserOf({"app"});
        parser.addOption("x", "", c.text, false);
        EXPECT_EQ(parser.getValueInt("x"), c.asInt) << c.text;
        EXPECT_EQ(parser.getValueDouble("x"), c.asDouble) << c.text;
        EXPECT_EQ(parser.getValueBool("x"), c.asBool) << c.text;
        EXPECT_EQ(parser.get<bool>("x"), c.extracted) << c.text;
    }
}

TEST_F(CmdLineParserTest, PrintsTheUsageTable) {
    CmdLineParser parser = parserOf({"app", "-frames", "50"});
    EXPECT_EQ(usage(parser, "see the manual"), BUILT_IN_TABLE + LEGEND + "see the manual\n");

    parser.setAppDescription("Face tracking demo");
    parser.addOption("frames", "number of frames", "100", false);
    parser.parse();
    parser.addOption("config", "configuration file", "cfg.xml", true);
    parser.addOption("a-name-longer-than-its-field", "text", "", false);
    std::cerr << std::right << std::setfill('.');
    const std::string table = usage(parser, "");
    std::cerr << std::setfill(' ');
    EXPECT_EQ(table, "Face tracking demo\n" + BUILT_IN_TABLE +
                         "-frames          (*)100                 50                  number of frames    \n"
                         "-config       (+)   cfg.xml             cfg.xml             configuration file  \n"
                         "-a-name-longer-than-its-field                                              text    "
                         "            \n" +
                         LEGEND);
    EXPECT_EQ(std::cerr.flags() & std::ios::adjustfield, std::ios::right);
}

TEST_F(CmdLineParserTest, EndsTheProcess) {
    const std::string table =
        BUILT_IN_TABLE + "-must         (+)                                           needed              \n";
    std::string helped = table;
    helped.replace(helped.find("-help            "), 45, "-help            (*)false               true ");
    const struct {
        std::vector<std::string> words;
        std::string output;
    } cases[] = {
        {{"app", "-must"}, "Warning: Option \"must\" requires an argument!! Value unchanged!!\n"},
        {{"app", "-help", "-must"}, "Warning: Option \"must\" requires an argument!! Value unchanged!!\n"},
        {{"app", "-help"}, helped + LEGEND},
        {{"app"}, "Warning: Option \"must\" must be set!!\n" + table + LEGEND},
    };
    for (const auto& c : cases) {
        CmdLineParser parser = parserOf(c.words);
        parser.addOption("must", "needed", "", true);
        parser.addOption("also", "", "", true);
        EXPECT_EXIT(parser.parse(), testing::ExitedWithCode(1),
                    testing::StartsWith(c.output.substr(0, c.output.find("\n\n"))));
    }
}

}  // namespace
