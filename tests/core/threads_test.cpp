#include "core/Exception.h"
#include "core/cvdata/MatView.h"
#include "core/cvdata/TiledImage.h"
#include "core/cvdata/features/Blobs.h"
#include "core/cvdata/features/ColorGMM.h"
#include "core/cvdata/features/ColourHist2d.h"
#include "core/cvdata/features/VisContourSamplePts.h"
#include "core/cvdata/pose/VectorPose.h"
#include "core/parser/CmdLineParser.h"
#include "core/trackingdata/State.h"
#include "core/util/Filesystem.h"
#include "core/util/Resources.h"
#include "math/SquareMatrix.h"
#include "support/Captured.h"
#include "support/TemporaryDirectory.h"

#include <iomanip>
#include <iostream>
#include <map>
#include <sstream>
#include <thread>

using namespace tarvos::core;
using namespace tarvos::core::cvdata;
using tarvos::math::Vector;

namespace {

constexpr int THREADS = 8;
constexpr int ROUNDS = 25;

/// Something with every class, on objects that no other thread knows.
void useEverything(int thread) {
    const std::string own = "thread" + std::to_string(thread);
    util::Filesystem::mkdir(own);
    char words[][8] = {"-frames", "7"};
    char* arguments[] = {words[0], words[1]};
    for (int round = 0; round < ROUNDS; ++round) {
        Image image(9 + thread, 7, Image::CHANNELS_BGR, Image::BITS_8U);
        matView(image).setTo(cv::Scalar(thread, round, 7));
        ASSERT_TRUE(image.save(own + "/image.png"));
        Image loaded(own + "/image.png");
        ASSERT_EQ(matView(loaded).at<cv::Vec3b>(6, 8),
                  cv::Vec3b(static_cast<unsigned char>(thread), static_cast<unsigned char>(round), 7));
        EXPECT_TRUE(Image("missing.png").empty());
        TiledImage mosaic(2, 2, static_cast<std::size_t>(image.width()), 7, Image::CHANNELS_BGR, Image::BITS_8U);
        mosaic.setCellImage(1, 1, &loaded);
        image = mosaic;
        ColorGMM skin(1, 1);
        skin.initSkinDistribution();
        Blobs blobs;
        blobs.addBlob();
        blobs.mBlobs[0].mMatrix1 = skin.mMixtures[0]->mCovariance.invert(tarvos::math::Matrix::INVERSION_LU);
        ColourHist2d histogram(4, 4, 4);
        histogram.data().fill(round);
        VisContourSamplePts contour;
        contour.mPoints.resize(2);
        State state(VectorPose(2), 2);
        state.setIncDataFromVector(Vector::of(thread, round, 3, 4), -1);
        const State copy(state);
        Vector packed(4);
        copy.getStateIncData(packed, -1);
        EXPECT_EQ(packed[1], round);
        parser::CmdLineParser parser(2, arguments);
        parser.addOption("frames", "", "0", false);
        parser.parse();
        EXPECT_EQ(parser.getValueInt("frames"), 7);
        const Exception error("a message");
        const util::Resources resources("somewhere", "app");
        EXPECT_EQ(util::Filesystem::ls(own, ".png").size(), 1U);
        std::cerr << "application\n";
    }
}

TEST(ThreadsTest, EveryClassServesEightThreadsAndNoLineIsLostOrGarbled) {
    const TemporaryDirectory directory;
    const std::string skin = outputOf([] { ColorGMM(1, 1).initSkinDistribution(); });
    std::string printed;
    std::istringstream heard(errorsOf([&] {
        printed = outputOf([] {
            std::vector<std::thread> threads;
            for (int i = 0; i < THREADS; ++i)
                threads.emplace_back(useEverything, i);
            for (std::thread& thread : threads)
                thread.join();
        });
    }));
    std::map<std::string, int> lines;
    for (std::string line; std::getline(heard, line);)
        ++lines[line];
    constexpr int ALL = THREADS * ROUNDS;
    EXPECT_THAT(lines,
                testing::UnorderedElementsAre(testing::Pair("ERROR: Could not load image: missing.png", ALL),
                                              testing::Pair("Exception Msg: a message", ALL),
                                              testing::Pair("Searching for data dir...", ALL),
                                              testing::Pair("Using given default data dir location:somewhere", ALL),
                                              testing::Pair("application", ALL)));
    std::string expected;
    for (int i = 0; i < ALL; ++i)
        expected += skin;
    EXPECT_TRUE(printed == expected) << "of the skin models";
}

TEST(ThreadsTest, TheApplicationsFormatsAreNeitherUsedForNumbersOfOursNorChanged) {
    const std::ios_base::fmtflags flags = std::cout.flags();
    std::cout << std::hex << std::showbase << std::setprecision(3) << std::setw(99);
    const std::string text = outputOf([] { ColorGMM(1, 1).initSkinDistribution(); });
    EXPECT_EQ(std::cout.width(), 99);
    std::cout << std::setw(0) << std::setprecision(6);
    std::cout.flags(flags);
    EXPECT_THAT(text, testing::StartsWith("Values of mixture 1 set to:\nCovariance:\n"));
    EXPECT_THAT(text, testing::HasSubstr("Weight:\n0.503\n")) << "the stream's precision";
}

}  // namespace
