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
#include "math/EigenMap.h"
#include "math/SquareMatrix.h"
#include "support/Files.h"
#include "support/Output.h"

#include <cerrno>
#include <dlfcn.h>
#include <iostream>
#include <new>
#include <set>
#include <sstream>
#include <thread>
#include <tuple>

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

// Not inline, since GCC would see malloc meet delete and delete meet free.
[[gnu::noinline]] void* operator new(std::size_t size) {
    void* memory = failsNow() ? nullptr : std::malloc(size != 0 ? size : 1);
    if (memory == nullptr)
        throw std::bad_alloc();
    ++liveBlocks;
    return memory;
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
    liveBlocks -= memory != nullptr ? 1 : 0;
    std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept {
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
    explicit World(std::size_t aSize = 2) : size(aSize) {
        blobs.mBlobs.resize(size - 1);
        change(static_cast<double>(size));
    }

    /// Gives everything another content, and every member of it its own.
    void change(double value) {
        const auto set = [&](auto&... numbers) {
            ((numbers = static_cast<std::decay_t<decltype(numbers)>>(++value)), ...);
        };
        const auto fill = [&](auto&... vectors) { (vectors.fill(++value), ...); };
        matView(image).setTo(value);
        matView(mosaic).setTo(value + 1);
        mosaic.setCellImage(size - 1, size - 1, &image);
        fill(square, packed, histogram.data());
        eigenMap(square).diagonal().array() += 1.0;
        for (Blobs::BlobInfo& blob : blobs.mBlobs) {
            set(blob.mValues[4], blob.mField1, blob.mField2, blob.mBlock[3]);
            blob.mMatrix1 = square;
            fill(blob.mMatrix2, blob.mVector);
        }
        set(model.mEpsilon);
        for (const auto& component : model.mMixtures) {
            fill(component->mMean, component->mCovariance, component->mCovarianceInverse);
            set(component->mWeight, component->mDeterminant);
        }
        state.setIncDataFromVector(packed, -1);
        state.setTimeStamp(value);
    }

    std::string text() const {
        std::ostringstream text;
        const auto add = [&](const auto&... values) { ((text << values << ' '), ...); };
        for (const Image* one : {&image, static_cast<const Image*>(&mosaic)})
            add(matView(*one), one->channels(), one->iplImage()->widthStep);
        for (const auto& blob : blobs.mBlobs)
            add(blob.mValues[4], blob.mField1, blob.mField2, blob.mBlock[3], blob.mMatrix1, blob.mMatrix2,
                blob.mVector);
        for (const auto& one : model.mMixtures)
            add(one->mMean, one->mCovariance, one->mCovarianceInverse, one->mWeight, one->mDeterminant, one->mDim);
        Vector inState(60);
        state.getStateData(inState);
        add(square, square.rows(), model.mEpsilon, histogram.data(), histogram.getBinsTotal(), inState,
            state.getTimeStamp(), parser.getValue("option"));
        return text.str();
    }

    std::vector<const void*> storage() const {
        return {image.imageBuffer(),      mosaic.imageBuffer(),    blobs.mBlobs.data(),
                model.mMixtures[0].get(), histogram.data().data(), square.data()};
    }

    std::vector<bool> flags() const { return {blobs.mFlag, model.mFlag, histogram.mFlag}; }

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
    for (const std::size_t size : {1U, 2U, 4U}) {
        for (const std::size_t previous : {1U, 2U, 4U}) {
            World source(size);
            source.change(20.0);
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

template <typename T>
constexpr bool MOVES = std::conjunction_v<std::is_nothrow_move_constructible<T>, std::is_nothrow_move_assignable<T>>;

TEST(EveryClassTest, MovesCopyNothing) {
    static_assert(MOVES<Blobs> && MOVES<ColorGMM> && MOVES<ColourHist2d> && MOVES<TiledImage> && MOVES<SquareMatrix>);
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
    marked.blobs.mFlag = marked.model.mFlag = marked.histogram.mFlag = true;
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
    {"ImageResize", [](World& w) { w.image.resizeMemory(0, 30); }},  // new pixels would be anything
    {"TiledImageAssignment", [](World& w) { w.mosaic = static_cast<const TiledImage&>(World(4).mosaic); }},
    {"TiledImageSetCell", [](World& w) { w.mosaic.setCellImage(0, 1, &w.image); }},
    {"BlobsCopyAndAssignment", [](World& w) { w.blobs = Blobs(w.blobs); }},
    {"BlobsAssignment", [](World& w) { w.blobs = static_cast<const Blobs&>(World(3).blobs); }},
    {"BlobsAddBlob", [](World& w) { w.blobs.addBlob(); }},
    {"ColorGmmAssignment", [](World& w) { w.model = static_cast<const ColorGMM&>(ColorGMM(3, 4)); }},
    {"ColorGmmSkin", [](World& w) { w.model.initSkinDistribution(); }},
    {"HistogramAssignment", [](World& w) { w.histogram = static_cast<const ColourHist2d&>(ColourHist2d(4, 4, 4)); }},
    {"HistogramSetBins", [](World& w) { w.histogram.setBins(5, 5, 5); }},
    {"StateClone", [](World& w) { delete w.state.clone(); }},
    {"StateAssignment", [](World& w) { w.state = World(4).state; }},
    {"StateUnpack", [](World& w) { w.state.setIncDataFromVector(Vector(60), -1); }},
    {"MatrixAssignment", [](World& w) { w.square = static_cast<const SquareMatrix&>(SquareMatrix(7)); }},
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
                break;  // it has fewer
        } catch (const std::exception&) {
            // std::bad_alloc, or the Exception of a file operation
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

/// What @p count threads make in @p rounds each, the lines that are heard meanwhile, and what is printed.
auto outcomeOf(int count, int rounds) {
    std::vector<std::set<std::string>> made(static_cast<std::size_t>(count));
    std::string printed;
    const auto work = [&](std::size_t thread) {
        for (int round = 0; round < rounds; ++round)
            made[thread].insert(everythingBy(std::to_string(thread)));
    };
    std::istringstream heard(errorsOf([&] {
        printed = outputOf([&] {
            std::vector<std::thread> threads;
            for (std::size_t i = 0; i < made.size(); ++i)
                threads.emplace_back(work, i);
            for (std::thread& thread : threads)
                thread.join();
        });
    }));
    std::multiset<std::string> lines;
    for (std::string line; std::getline(heard, line);)
        lines.insert(line);
    for (std::set<std::string>& others : made)
        made[0].merge(others);
    return std::tuple(made[0], lines, printed);
}

TEST(EveryClassTest, ServesEightThreadsAndNoLineIsLostOrGarbled) {
    const TemporaryDirectory directory;
    const auto [made, heard, printed] = outcomeOf(8, 12);
    const auto [madeByOne, heardOfOne, printedByOne] = outcomeOf(1, 8 * 12);
    EXPECT_EQ(made, madeByOne);
    EXPECT_EQ(made.size(), 1U);
    EXPECT_EQ(heard, heardOfOne);
    EXPECT_EQ(printed, printedByOne) << "the skin models";
}

}  // namespace
