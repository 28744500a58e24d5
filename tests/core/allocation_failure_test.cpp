/// @file
/// The operations that allocate, with each allocation made to fail once: they throw `std::bad_alloc`, change nothing
/// and leak nothing.

#include "support/Files.h"
#include "support/Output.h"
#include "support/Poses.h"
#include "support/Values.h"

#include <tarvos/core/util/Filesystem.h>
#ifdef TARVOS_WITH_VISION
#include <tarvos/vision/Histogram.h>
#include <tarvos/vision/KalmanFilter.h>
#include <tarvos/vision/ParticleFilter.h>
#endif

#include <cerrno>
#include <cstdlib>
#include <dlfcn.h>
#include <new>
#include <stdexcept>
#include <utility>

using namespace values;
using tarvos::core::util::Filesystem;
using tarvos::math::Vector;

#ifdef TARVOS_WITH_VISION
namespace tarvos::vision {
Members members(const KalmanFilter& filter) {
    return values::members(filter.state()).addAll("covariance", filter.covariance());
}
Members members(const ParticleFilter& filter) {
    return values::members(filter.state()).addAll("particles", filter.particles());
}
}  // namespace tarvos::vision
#endif

namespace {

/// The allocations of this thread that succeed before one fails; negative if none is to fail.
thread_local long untilFailure = -1;
/// Blocks from `operator new` that this thread has not freed.
thread_local long liveBlocks = 0;

const std::string LONG(40, 'x');  // too long for a string's own storage

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

/// Runs @p operation on what @p prepare makes, first with all allocations, then with 0, 1, 2 and so on that succeed,
/// until it needs no more. Whenever one fails, it must throw a @p Failure; @p check gets the count of blocks leaked.
template <typename Failure = std::bad_alloc, typename Prepare, typename Operation, typename Check>
void sweep(Prepare prepare, Operation operation, Check check) {
    for (long n = -1; !testing::Test::HasFailure(); ++n) {
        auto target = prepare();
        const long before = liveBlocks;
        bool hasThrown = false;
        untilFailure = n;
        try {
            operation(target);
        } catch (const Failure&) {
            hasThrown = true;
        }
        const long leaked = liveBlocks - before;
        const bool hasFailed = untilFailure < 0;
        untilFailure = -1;
        if (!hasFailed)
            return;
        if (n == -1)
            continue;  // some memory is allocated once in a process
        SCOPED_TRACE(testing::Message() << "allocation " << n << " failed");
        check(target, leaked);
        EXPECT_TRUE(hasThrown);
    }
}

/// The same on copies of @p object, which must neither change nor leak.
template <typename T, typename Operation>
void sweepOn(const T& object, Operation operation) {
    const Members before = members(object);
    sweep([&] { return object; }, operation,
          [&](const T& target, long leaked) {
              EXPECT_EQ(difference(target, before), "");
              EXPECT_EQ(leaked, 0) << "blocks";
          });
}
template <typename T, typename Operation>
void sweepOn(Operation operation) {
    sweepOn(makeChanged<T>(2), operation);
}

/// The same for an assignment from a larger and from a smaller object.
template <typename T>
void sweepAssignment() {
    for (const int size : {5, 1}) {
        const T source = makeChanged<T>(size);
        sweepOn<T>([&](T& target) { target = source; });
    }
}

/// The same with an image file that must not change, for an operation that returns its success. OpenCV may leak.
template <typename Operation>
void sweepFiles(Operation operation) {
    const TemporaryDirectory directory;
    ASSERT_TRUE(makeChanged<Image>(2).save("image.ppm"));
    const std::string kept = contentOf("image.ppm");
    const auto prepare = [&] {
        writeFile("image.ppm", kept);
        std::filesystem::remove(LONG);
        return makeChanged<Image>(3);
    };
    const auto attempt = [&](Image& image) {
        if (!operation(image))
            throw std::runtime_error("it has been reported");
    };
    captureStderr([&] {
        sweep<std::exception>(prepare, attempt, [&](const Image&, long /*leaked*/) {
            EXPECT_EQ(contentOf("image.ppm"), kept);
            EXPECT_EQ(entriesOf("."), 1);
        });
    });
}

#ifdef TARVOS_WITH_VISION
const tarvos::vision::KalmanFilter KALMAN(makeChanged<State>(2), all(12, 10.0), all(12, 10.0));
const tarvos::vision::ParticleFilter PARTICLES(makeChanged<State>(2), 10, all(36, 10.0), all(12, 10.0));
#endif

using Operation = std::pair<std::string, void (*)()>;

const Operation OPERATIONS[] = {
    {"ImageCopy", [] { sweepOn<Image>([](Image& image) { Image copy(image); }); }},
    {"ImageAssignment", sweepAssignment<Image>},
    {"TiledImageAssignment", sweepAssignment<TiledImage>},
    {"BlobsAssignment", sweepAssignment<Blobs>},
    {"ColorGmmAssignment", sweepAssignment<ColorGMM>},
    {"HistogramAssignment", sweepAssignment<ColourHist2d>},
    {"HistogramSetBins", [] { sweepOn<ColourHist2d>([](ColourHist2d& bins) { bins.setBins(5, 5, 5); }); }},
    {"StateUnpack", [] { sweepOn<State>([](State& state) { state.setDataFromVector(Vector(36), -1); }); }},
    {"FilesystemCp", [] { sweepFiles([](Image&) { return Filesystem::cp("image.ppm", LONG); }); }},
#ifdef TARVOS_WITH_VISION
    {"AddPixels",
     [] {
         const cv::Mat pixels(3, 4, CV_8UC3, cv::Scalar(1, 2, 3));
         sweepOn<ColourHist2d>([&](ColourHist2d& bins) { tarvos::vision::addPixels(bins, pixels); });
     }},
    {"KalmanPredict", [] { sweepOn(KALMAN, [](auto& filter) { filter.predict(99.0); }); }},
    {"KalmanCorrect", [] { sweepOn(KALMAN, [](auto& filter) { filter.correct(all(12, 10.0)); }); }},
    {"ParticlesPredict", [] { sweepOn(PARTICLES, [](auto& filter) { filter.predict(99.0); }); }},
    {"ParticlesCorrect",
     [] {
         cv::setNumThreads(1);
         sweepOn(PARTICLES, [](auto& filter) { filter.correct([](const State&) { return 1.0; }); });
         cv::setNumThreads(-1);
     }},
#endif
#ifndef __SANITIZE_ADDRESS__  // which reports that OpenCV leaks a matrix whose header cannot be allocated
    {"ImageLoad", [] { sweepFiles([](Image&) { return !Image("image.ppm").empty(); }); }},
    {"ImageSave", [] { sweepFiles([](Image& image) { return image.save("image.ppm"); }); }},
#endif
};

struct AllocationFailure : testing::TestWithParam<Operation> {};

TEST_P(AllocationFailure, ChangesAndLeaksNothing) {
    GetParam().second();
}

INSTANTIATE_TEST_SUITE_P(, AllocationFailure, testing::ValuesIn(OPERATIONS),
                         [](const auto& test) { return test.param.first; });

}  // namespace
