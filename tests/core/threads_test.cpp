/// @file
/// Objects of different threads share nothing, and what threads write does not interleave.

#include "core/Exception.h"
#include "core/parser/CmdLineParser.h"
#include "core/util/Filesystem.h"
#include "core/util/Resources.h"
#include "support/Files.h"
#include "support/Output.h"
#include "support/Values.h"

#include <iostream>
#include <set>
#include <thread>

using namespace values;

namespace {

template <typename T>
void useValue() {
    const auto source = makeChanged<T>(3);
    auto target = makeChanged<T>(2);
    target = T(source);
    EXPECT_EQ(difference(target, members(source)), "");
}

void useEverything(const std::string& thread) {
    useValue<Image>();
    useValue<TiledImage>();
    useValue<ColorGMM>();
    useValue<ColourHist2d>();
    useValue<Blobs>();
    useValue<State>();
    ColorGMM(1, 1).initSkinDistribution();
    const std::string file = thread + ".png";
    EXPECT_TRUE(makeChanged<Image>(3).save(file));
    EXPECT_FALSE(Image(file).empty());
    EXPECT_TRUE(Image("missing.png").empty());
    EXPECT_EQ(util::Filesystem::ls(".", file).size(), 1U);
    EXPECT_EQ(util::Resources("", "app").findFile(file), file);
    parser::CmdLineParser(0, nullptr).printUsage("");
    const Exception error("a message");
    std::cerr << "a line of the application\n";
}

std::multiset<std::string> linesOf(const std::string& text) {
    std::istringstream stream(text);
    std::multiset<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.insert(line);
    return lines;
}

/// What is written to standard output and standard error while @p count threads use everything @p rounds times each.
std::pair<std::string, std::multiset<std::string>> outputOf(int count, int rounds) {
    std::string printed;
    const std::string reported = captureStderr([&] {
        printed = captureStdout([&] {
            std::vector<std::thread> threads;
            for (int i = 0; i < count; ++i)
                threads.emplace_back([=] {
                    for (int round = 0; round < rounds; ++round)
                        useEverything(std::to_string(i));
                });
            for (std::thread& thread : threads)
                thread.join();
        });
    });
    return {printed, linesOf(reported)};
}

TEST(Threads, EightDoWhatOneDoesAndNoLineIsLostOrGarbled) {
    const TemporaryDirectory directory;
    const auto [printed, reported] = outputOf(8, 12);
    const auto [printedByOne, reportedByOne] = outputOf(1, 8 * 12);
    EXPECT_TRUE(printed == printedByOne) << "the skin models are interleaved";
    std::vector<std::string> garbled;
    std::set_symmetric_difference(reported.begin(), reported.end(), reportedByOne.begin(), reportedByOne.end(),
                                  std::back_inserter(garbled));
    EXPECT_THAT(garbled, testing::IsEmpty());
}

}  // namespace
