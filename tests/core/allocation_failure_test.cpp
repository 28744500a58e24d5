/// @file
/// Every operation that allocates, with each of its allocations made to fail once: it throws `std::bad_alloc`, changes
/// nothing and leaks nothing.

#include "core/util/Filesystem.h"
#include "core/util/Resources.h"
#include "support/Files.h"
#include "support/Output.h"
#include "support/Values.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <new>

using namespace tarvos::core;
using namespace tarvos::core::cvdata;
using tarvos::core::util::Filesystem;
using tarvos::math::Vector;

namespace {

/// The allocations of this thread that succeed before one fails; negative if none is to fail.
thread_local long untilFailure = -1;
/// Blocks from `operator new` that this thread has not freed.
thread_local long liveBlocks = 0;

/// Too long for a string's own storage.
const std::string LONG(40, 'x');

bool failsNow() {
    return untilFailure >= 0 && untilFailure-- == 0;
}

}  // namespace

// Not inline: GCC would warn that malloc meets delete.
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

/// From which OpenCV allocates.
extern "C" int posix_memalign(void** memory, std::size_t alignment, std::size_t size) noexcept {
    static const auto next = reinterpret_cast<decltype(&posix_memalign)>(dlsym(RTLD_NEXT, "posix_memalign"));
    return failsNow() ? ENOMEM : next(memory, alignment, size);
}

namespace {

/// Runs @p action with its allocation @p n failing. False if it has fewer.
template <typename Action>
bool withFailure(long n, Action action) {
    untilFailure = n;
    action();
    const bool hasFailed = untilFailure < 0;
    untilFailure = -1;
    return hasFailed;
}

/// Runs @p operation on what @p prepare makes, first with all allocations, then with 0, 1, 2 and so on that succeed,
/// until it needs no more. Whenever one fails, it must throw a @p Failure and leak nothing, and @p check must hold.
template <typename Failure = std::bad_alloc, typename Prepare, typename Operation, typename Check>
void sweep(Prepare prepare, Operation operation, Check check) {
    {
        auto target = prepare();
        operation(target);  // which allocates what is allocated once in a process
    }
    for (long n = 0; !testing::Test::HasFailure(); ++n) {
        SCOPED_TRACE(testing::Message() << "allocation " << n << " failed");
        auto target = prepare();
        const long before = liveBlocks;
        bool hasThrown = false;
        const auto attempt = [&] {
            try {
                operation(target);
            } catch (const Failure&) {
                hasThrown = true;
            }
        };
        if (!withFailure(n, attempt))
            return;
        EXPECT_TRUE(hasThrown);
        EXPECT_EQ(liveBlocks, before) << "blocks leaked";
        check(target);
    }
}

/// The same on an object of class T, which must not change.
template <typename T, typename Operation>
void sweep(Operation operation) {
    const Members before = Value<T>::members(Value<T>::make(2));
    sweep([] { return Value<T>::make(2); }, operation, [&](const T& target) { EXPECT_TRUE(isSame(target, before)); });
}

/// The same for an assignment from a larger and from a smaller object.
template <typename T>
void sweepAssignment() {
    for (const int size : {5, 1}) {
        const T source = Value<T>::make(size);
        sweep<T>([&](T& target) { target = source; });
    }
}

/// The same for an operation on files, which may report the failure as the library's own error.
template <typename Action>
void sweepFiles(Action action) {
    const TemporaryDirectory directory;
    captureStderr([&] {
        sweep<std::exception>([] { return 0; }, [&](int /*unused*/) { action(); },
                              [](int /*unused*/) { EXPECT_EQ(entriesOf("."), 0); });
    });
}

/// The same for the assignment of a mixture's component from a larger one.
void sweepComponent() {
    const GM source(4);
    sweep([] { return GM(2); }, [&](GM& target) { target = source; },
          [](const GM& target) {
              EXPECT_EQ(target.mDim, 2U);
              EXPECT_EQ(target.mCovariance.rows(), 2U);
              EXPECT_EQ(target.mMean.dimension(), 2U);
          });
}

struct Operation {
    const char* name;
    void (*sweep)();
};

std::ostream& operator<<(std::ostream& stream, const Operation& operation) {
    return stream << operation.name;
}

const Operation OPERATIONS[] = {
    {"ImageCopy", [] { sweep<Image>([](Image& image) { Image copy(image); }); }},
    {"ImageClone", [] { sweep<Image>([](Image& image) { delete image.clone(); }); }},
    {"ImageAssignment", sweepAssignment<Image>},
    {"ImageResize", [] { sweep<Image>([](Image& image) { image.resizeMemory(99, 30); }); }},
    {"TiledImageAssignment", sweepAssignment<TiledImage>},
    {"BlobsAssignment", sweepAssignment<Blobs>},
    {"BlobsAddBlob", [] { sweep<Blobs>([](Blobs& blobs) { blobs.addBlob(); }); }},
    {"GmAssignment", sweepComponent},
    {"ColorGmmAssignment", sweepAssignment<ColorGMM>},
    {"ColorGmmSkin",
     [] { captureStdout([] { sweep<ColorGMM>([](ColorGMM& model) { model.initSkinDistribution(); }); }); }},
    {"HistogramAssignment", sweepAssignment<ColourHist2d>},
    {"HistogramSetBins", [] { sweep<ColourHist2d>([](ColourHist2d& bins) { bins.setBins(5, 5, 5); }); }},
    {"StateClone", [] { sweep<State>([](State& state) { delete state.clone(); }); }},
    {"StateAssignment", sweepAssignment<State>},
    {"StateUnpack", [] { sweep<State>([](State& state) { state.setDataFromVector(Vector(36), -1); }); }},
    {"FilesystemExists", [] { sweepFiles([] { Filesystem::exists(LONG); }); }},
    {"FilesystemRm", [] { sweepFiles([] { Filesystem::rm(LONG); }); }},
    {"ResourcesFindFile", [] { sweepFiles([] { util::Resources(LONG, "app").findFile(LONG); }); }},
};

struct AllocationFailure : testing::TestWithParam<Operation> {};

TEST_P(AllocationFailure, ChangesAndLeaksNothing) {
    GetParam().sweep();
}

INSTANTIATE_TEST_SUITE_P(, AllocationFailure, testing::ValuesIn(OPERATIONS),
                         [](const auto& test) { return test.param.name; });

// A codec may take its own lack of memory for a damaged file.
#ifndef __SANITIZE_ADDRESS__  // which reports that OpenCV leaks a matrix whose header cannot be allocated
TEST(ImageFileAllocationFailure, LoadsTheImageOrNone) {
    const TemporaryDirectory directory;
    ASSERT_TRUE(Value<Image>::make(2).save("image.ppm"));
    const Image whole("image.ppm");
    const auto load = [&] {
        try {
            const Image image("image.ppm");
            EXPECT_TRUE(image.empty() || std::memcmp(image.row(1), whole.row(1), 18) == 0);
        } catch (const std::bad_alloc&) {
        }
    };
    captureStderr([&] {
        for (long n = 0; withFailure(n, load); ++n) {
        }
    });
}

TEST(ImageFileAllocationFailure, SavesTheWholeFileOrNone) {
    const TemporaryDirectory directory;
    const Image image = Value<Image>::make(2);
    ASSERT_TRUE(image.save("new.ppm"));
    writeFile("image.ppm", "old");
    bool isSaved = false;
    const auto save = [&] {
        try {
            isSaved = image.save("image.ppm");
        } catch (const std::bad_alloc&) {
        }
    };
    captureStderr([&] {
        for (long n = 0; withFailure(n, save) && !isSaved; ++n) {
            EXPECT_EQ(contentOf("image.ppm"), "old");
            EXPECT_EQ(entriesOf("."), 2);
        }
    });
    EXPECT_EQ(contentOf("image.ppm"), contentOf("new.ppm"));
    EXPECT_EQ(entriesOf("."), 2);
}
#endif

}  // namespace
