/// @file
/// What holds for every class: copies are deep, moves copy nothing, what fails changes nothing, and objects of
/// different threads do not know of each other.

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
#include "support/Files.h"
#include "support/Output.h"

#include <cerrno>
#include <dlfcn.h>
#include <functional>
#include <iostream>
#include <new>
#include <set>
#include <sstream>
#include <thread>

using namespace tarvos::core;
using namespace tarvos::core::cvdata;
using tarvos::math::SquareMatrix;
using tarvos::math::Vector;

namespace {

/// The allocations of this thread that succeed before one fails; below zero, all of them.
thread_local long untilFailure = -1;
/// Blocks from `operator new` that this thread has not given back.
thread_local long liveBlocks = 0;

bool failsNow() {
    return untilFailure >= 0 && untilFailure-- == 0;
}

}  // namespace

void* operator new(std::size_t size) {
    void* memory = failsNow() ? nullptr : std::malloc(size != 0 ? size : 1);
    if (memory == nullptr)
        throw std::bad_alloc();
    ++liveBlocks;
    return memory;
}
void operator delete(void* memory) noexcept {
    liveBlocks -= memory != nullptr ? 1 : 0;
    std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    operator delete(memory);
}

/// Where OpenCV takes its memory from.
extern "C" int posix_memalign(void** memory, std::size_t alignment, std::size_t size) noexcept {
    static const auto next = reinterpret_cast<decltype(&posix_memalign)>(dlsym(RTLD_NEXT, "posix_memalign"));
    return failsNow() ? ENOMEM : next(memory, alignment, size);
}

namespace {

/// An object of every class that has a value.
struct World {
    explicit World(int aSize = 2) : size(aSize) {
        blobs.mBlobs.resize(size - 1);
        change(1.0);
    }

    /// Gives everything another content, and every member of it its own.
    void change(double value) {
        const auto set = [&](auto& number) { number = static_cast<std::decay_t<decltype(number)>>(++value); };
        const auto fill = [&](auto& numbers) { numbers.fill(++value); };
        matView(image).setTo(value);
        matView(mosaic).setTo(value + 1);
        mosaic.setCellImage(size - 1, size - 1, &image);
        fill(square);
        for (unsigned int i = 0; i < square.rows(); ++i)
            square(i, i) += 1;
        for (Blobs::BlobInfo& blob : blobs.mBlobs) {
            set(blob.mValues[4]);
            set(blob.mField1);
            set(blob.mField2);
            set(blob.mBlock[3]);
            blob.mMatrix1 = square;
            fill(blob.mMatrix2);
            fill(blob.mVector);
        }
        set(model.mEpsilon);
        for (const auto& component : model.mMixtures) {
            fill(component->mMean);
            fill(component->mCovariance);
            fill(component->mCovarianceInverse);
            set(component->mWeight);
            set(component->mDeterminant);
        }
        fill(histogram.data());
        fill(packed);
        state.setIncDataFromVector(packed, -1);
        state.setTimeStamp(value);
    }

    std::string text() const {
        std::ostringstream text;
        for (const Image* one : {&image, static_cast<const Image*>(&mosaic)})
            text << matView(*one) << one->channels() << one->iplImage()->widthStep << '\n';
        text << square << square.rows() << '\n';
        for (const auto& blob : blobs.mBlobs)
            text << blob.mValues[4] << ' ' << blob.mField1 << ' ' << blob.mField2 << ' ' << blob.mBlock[3]
                 << blob.mMatrix1 << blob.mMatrix2 << blob.mVector << '\n';
        text << model.mEpsilon << '\n';
        for (const auto& component : model.mMixtures)
            text << component->mMean << component->mCovariance << component->mCovarianceInverse << component->mWeight
                 << ' ' << component->mDeterminant << ' ' << component->mDim << '\n';
        Vector inState(60);
        state.getStateData(inState);
        text << histogram.data() << histogram.getBinsTotal() << inState << state.getTimeStamp()
             << parser.getValue("option");
        return text.str();
    }

    std::vector<const void*> storage() const {
        return {image.imageBuffer(),      mosaic.imageBuffer(),    blobs.mBlobs.data(),
                model.mMixtures[0].get(), histogram.data().data(), square.data()};
    }

    std::vector<bool> flags() const { return {blobs.mFlag, model.mFlag, histogram.mFlag}; }
    void mark() { blobs.mFlag = model.mFlag = histogram.mFlag = true; }

    std::size_t size;
    Image image{static_cast<int>(size) + 4, 4, Image::CHANNELS_BGR, Image::BITS_8U};
    TiledImage mosaic{size, size, size + 4, 4, Image::CHANNELS_BGR, Image::BITS_8U};
    SquareMatrix square{static_cast<unsigned int>(size * size)};  // in the object and on the heap
    Blobs blobs;
    ColorGMM model{size, size};
    ColourHist2d histogram{static_cast<unsigned char>(size), 2, 2};
    Vector packed{60};
    State state{VectorPose(20), 3};
    parser::CmdLineParser parser{0, nullptr};
};

TEST(EveryClassTest, CopiesAreDeep) {
    for (const int size : {1, 2, 4}) {
        for (const int previous : {1, 2, 4}) {
            World source(size);
            source.change(previous);
            const std::string text = source.text();
            World target(previous);
            target = source;
            target = static_cast<const World&>(target);
            World copy(target);
            EXPECT_EQ(copy.text(), text);
            copy.change(50.0);
            EXPECT_EQ(target.text(), text);
            target.change(50.0);
            EXPECT_EQ(source.text(), text);
            EXPECT_EQ(target.text(), copy.text());
        }
    }
}

TEST(EveryClassTest, MovesCopyNothing) {
    static_assert(std::is_nothrow_move_constructible_v<Blobs> && std::is_nothrow_move_assignable_v<Blobs>);
    static_assert(std::is_nothrow_move_constructible_v<ColorGMM> && std::is_nothrow_move_assignable_v<ColorGMM>);
    static_assert(std::is_nothrow_move_constructible_v<TiledImage> && std::is_nothrow_move_assignable_v<TiledImage>);
    static_assert(std::is_nothrow_move_constructible_v<Vector> && std::is_nothrow_move_assignable_v<SquareMatrix>);
    static_assert(std::is_nothrow_move_constructible_v<ColourHist2d> &&
                  std::is_nothrow_move_assignable_v<ColourHist2d>);
    World source(4);
    const auto storage = source.storage();
    const std::string text = source.text();
    World moved(std::move(source));
    EXPECT_EQ(moved.storage(), storage);
    World target(2);
    target = std::move(moved);
    EXPECT_EQ(target.storage(), storage);
    EXPECT_EQ(target.text(), text);
    target.change(50.0);
}

TEST(EveryClassTest, FlagsStayInAssignmentsAreFalseInCopiesAndMoveAlong) {
    World marked;
    World target;
    marked.mark();
    target = marked;
    EXPECT_THAT(target.flags(), testing::Each(false)) << "assigned";
    EXPECT_THAT(World(marked).flags(), testing::Each(false)) << "copied";
    World moved(std::move(marked));
    EXPECT_THAT(moved.flags(), testing::Each(true)) << "moved along";
    target = std::move(moved);
    EXPECT_THAT(target.flags(), testing::Each(false)) << "moved into another";
}

using Operation = std::pair<const char*, void (*)(World&)>;

const std::string LONG(40, 'x');

const Operation OPERATIONS[] = {
    {"ImageCopyAndClone", [](World& w) { delete Image(w.image).clone(); }},
    {"ImageAssignment", [](World& w) { w.image = w.mosaic; }},
    {"ImageMoveAssignment", [](World& w) { w.image = Image(w.mosaic); }},
    {"ImageResize",
     [](World& w) {
         w.image.resizeMemory(30, 30);
         matView(w.image).setTo(1);
     }},
    {"TiledImageAssignment", [](World& w) { w.mosaic = World(4).mosaic; }},
    {"TiledImageSetCell", [](World& w) { w.mosaic.setCellImage(0, 1, &w.image); }},
    {"BlobsCopyAndAssignment", [](World& w) { w.blobs = Blobs(w.blobs); }},
    {"BlobsAssignment",
     [](World& w) {
         const World other(3);
         w.blobs = other.blobs;
     }},
    {"BlobsAddBlob", [](World& w) { w.blobs.addBlob(); }},
    {"ColorGmmAssignment", [](World& w) { w.model = static_cast<const ColorGMM&>(ColorGMM(3, 4)); }},
    {"ColorGmmSkin", [](World& w) { w.model.initSkinDistribution(); }},
    {"HistogramAssignment", [](World& w) { w.histogram = static_cast<const ColourHist2d&>(ColourHist2d(4, 4, 4)); }},
    {"HistogramSetBins", [](World& w) { w.histogram.setBins(5, 5, 5); }},
    {"StateClone", [](World& w) { delete w.state.clone(); }},
    {"StateAssignment",
     [](World& w) {
         World other;
         other.change(50.0);
         w.state = other.state;
     }},
    {"StateUnpack", [](World& w) { w.state.setIncDataFromVector(Vector(60), -1); }},
    {"MatrixAssignment", [](World& w) { w.square = SquareMatrix(7); }},
    {"MatrixInverse", [](World& w) { w.square = w.square.invert(SquareMatrix::INVERSION_LU); }},
    {"ParserRegistration", [](World& w) { w.parser.addOption("option", LONG, LONG, false); }},
    {"ContourMove", [](World& /*w*/) { std::vector<VisContourSamplePts>(3).resize(9); }},
    {"FilesystemExists", [](World& /*w*/) { util::Filesystem::exists(LONG); }},
    {"FilesystemRm", [](World& /*w*/) { util::Filesystem::rm(LONG); }},
    {"ResourcesFindFile", [](World& /*w*/) { util::Resources(LONG, "app").findFile(LONG); }},
    {"MissingFile", [](World& /*w*/) { Image image("missing.png"); }},
};

class EveryOperationTest : public testing::TestWithParam<Operation> {};

/// Every allocation of the operation is made to fail once, each in a run of its own. (Not under valgrind, which
/// allocates in its own way.)
void sweep(void (*operation)(World&)) {
    World warm;
    operation(warm);  // sets up what is set up once in a process
    for (long n = 0; untilFailure < 0; ++n) {
        World world;
        const std::string before = world.text();
        const long live = liveBlocks;
        try {
            untilFailure = n;
            operation(world);
            if (untilFailure >= 0)
                break;                     // it has fewer
        } catch (const std::exception&) {  // std::bad_alloc, or the Exception of a file operation
        }
        ASSERT_EQ(liveBlocks, live) << "allocation " << n << " leaks";
        ASSERT_EQ(world.text(), before) << "allocation " << n << " failed";
    }
    untilFailure = -1;
}

TEST_P(EveryOperationTest, ChangesNothingAndLosesNoMemoryWhereItFails) {
    outputOf([] { errorsOf([] { sweep(GetParam().second); }); });
}

INSTANTIATE_TEST_SUITE_P(, EveryOperationTest, testing::ValuesIn(OPERATIONS),
                         [](const auto& test) { return test.param.first; });

/// What every operation makes of objects that no other thread knows.
std::string everythingBy(const std::string& thread) {
    std::string all;
    for (const Operation& operation : OPERATIONS) {
        World world;
        operation.second(world);
        all += world.text();
    }
    World world;
    EXPECT_TRUE(world.image.save(thread + ".png"));
    world.image = Image(thread + ".png");
    EXPECT_FALSE(util::Filesystem::ls(".", thread + ".png").empty());
    const Exception error("a message");
    std::cerr << "application\n";
    return all + world.text();
}

std::multiset<std::string> linesOf(const std::string& text, int times = 1) {
    std::istringstream lines(text);
    std::multiset<std::string> all;
    for (std::string line; std::getline(lines, line);)
        for (int i = 0; i < times; ++i)
            all.insert(line);
    return all;
}

TEST(EveryClassTest, ServesEightThreadsAndNoLineIsLostOrGarbled) {
    constexpr int THREADS = 8;
    constexpr int ROUNDS = 12;
    const TemporaryDirectory directory;
    std::string alone, heardAlone, printedAlone, printed;
    heardAlone = errorsOf([&] { printedAlone = outputOf([&] { alone = everythingBy("one"); }); });
    std::set<std::string> made[THREADS];
    const auto work = [&](int thread) {
        for (int round = 0; round < ROUNDS; ++round)
            made[thread].insert(everythingBy(std::to_string(thread)));
    };
    const std::string heard = errorsOf([&] {
        printed = outputOf([&] {
            std::vector<std::thread> threads;
            for (int i = 0; i < THREADS; ++i)
                threads.emplace_back(work, i);
            for (std::thread& thread : threads)
                thread.join();
        });
    });
    EXPECT_THAT(made, testing::Each(testing::ElementsAre(alone)));
    EXPECT_EQ(linesOf(heard), linesOf(heardAlone, THREADS * ROUNDS));
    std::string expected;
    for (int i = 0; i < THREADS * ROUNDS; ++i)
        expected += printedAlone;
    EXPECT_TRUE(printed == expected) << "of the skin models";
}

}  // namespace
