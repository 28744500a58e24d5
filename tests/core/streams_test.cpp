#include "core/Exception.h"
#include "core/cvdata/Image.h"
#include "core/cvdata/features/ColorGMM.h"
#include "core/util/Resources.h"
#include "support/Captured.h"

#include <functional>
#include <iomanip>
#include <iostream>
#include <map>
#include <sstream>
#include <thread>

using namespace tarvos::core;

namespace {

void inFourThreads(const std::function<void()>& action) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back(action);
    for (std::thread& thread : threads)
        thread.join();
}

TEST(StreamsTest, LinesOfManyThreadsArriveWholeOnStandardError) {
    std::istringstream heard(errorsOf([] {
        inFourThreads([] {
            for (int i = 0; i < 200; ++i) {
                const cvdata::Image image("missing.png");
                const Exception error("a message");
                const util::Resources resources("somewhere", "app");
                std::cerr << "application\n";
            }
        });
    }));
    std::map<std::string, int> lines;
    for (std::string line; std::getline(heard, line);)
        ++lines[line];
    EXPECT_THAT(lines, testing::UnorderedElementsAre(
                           testing::Pair("ERROR: Could not load image: missing.png", 800),
                           testing::Pair("Exception Msg: a message", 800),
                           testing::Pair("Searching for data dir...", 800), testing::Pair("application", 800),
                           testing::Pair("Using given default data dir location:somewhere", 800)));
}

TEST(StreamsTest, ThePrintOutOfTheSkinModelIsOnePiece) {
    const auto print = [] { cvdata::ColorGMM(1, 1).initSkinDistribution(); };
    const std::string once = outputOf(print);
    std::string all = outputOf([&] {
        inFourThreads([&] {
            for (int i = 0; i < 50; ++i)
                print();
        });
    });
    while (all.rfind(once, 0) == 0)
        all.erase(0, once.size());
    EXPECT_EQ(all, "");
}

TEST(StreamsTest, TheApplicationsFormatsAreNeitherUsedForNumbersOfOursNorChanged) {
    const std::ios_base::fmtflags flags = std::cout.flags();
    std::cout << std::hex << std::showbase << std::setprecision(3) << std::setw(99);
    const std::string text = outputOf([] { cvdata::ColorGMM(1, 1).initSkinDistribution(); });
    EXPECT_EQ(std::cout.width(), 99);
    std::cout << std::setw(0) << std::setprecision(6);
    std::cout.flags(flags);
    EXPECT_THAT(text, testing::StartsWith("Values of mixture 1 set to:\nCovariance:\n"));
    EXPECT_THAT(text, testing::HasSubstr("Weight:\n0.503\n")) << "the stream's precision";
}

}  // namespace
