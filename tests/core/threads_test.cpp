/// @file
/// Objects of different threads share nothing, and what threads write does not interleave.

#include "support/Files.h"
#include "support/Output.h"
#include "support/Values.h"

#include <tarvos/core/Exception.h>
#include <tarvos/core/parser/CmdLineParser.h>
#include <tarvos/core/util/Filesystem.h>
#include <tarvos/core/util/Resources.h>

#include <iostream>
#include <map>
#include <thread>

using namespace values;

namespace {

void useEverything(const std::string& thread) {
    const std::string file = thread + ".png";
    const bool areRead = makeChanged<Image>(3).save(file) && !Image(file).empty() && Image("missing.png").empty();
    std::cerr << (areRead ? "files, " : "no files, ") + std::to_string(util::Filesystem::ls(".", file).size()) + "\n";
    ColorGMM(1, 1).initSkinDistribution();
    util::Resources("", "app").findFile(file);
    parser::CmdLineParser(0, nullptr).printUsage("");
    const Exception error("a message");
}

/// How often each line occurs.
std::map<std::string, int> linesOf(const std::string& text) {
    std::istringstream stream(text);
    std::map<std::string, int> lines;
    for (std::string line; std::getline(stream, line);)
        ++lines[line];
    return lines;
}

void useEverythingIn(int count, int rounds) {
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i)
        threads.emplace_back([=] {
            for (int round = 0; round < rounds; ++round)
                useEverything(std::to_string(i));
        });
    for (std::thread& thread : threads)
        thread.join();
}

TEST(Report, ReachesStandardErrorThoughTheTiedStreamFailsAndThrows) {
    struct Failing : std::streambuf {
        int sync() override { return -1; }
    } failing;
    std::ostream tied(&failing);
    tied.exceptions(std::ios_base::badbit);
    std::ostream* const previous = std::cerr.tie(&tied);
    EXPECT_EQ(captureStderr([] { Exception("first"), Exception("second"); }),
              "Exception Msg: first\nException Msg: second\n");
    std::cerr.tie(previous);
}

TEST(Threads, ConcurrentUse) {
    const TemporaryDirectory directory;
    std::string printed[2], reported[2];
    for (const bool isOne : {false, true})
        reported[isOne] = captureStderr(
            [&] { printed[isOne] = captureStdout([&] { useEverythingIn(isOne ? 1 : 8, isOne ? 96 : 12); }); });
    EXPECT_TRUE(printed[0] == printed[1]) << "the skin models are interleaved";
    EXPECT_EQ(linesOf(reported[0]), linesOf(reported[1]));
}

}  // namespace
