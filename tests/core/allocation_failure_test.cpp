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
#include "support/Allocations.h"
#include "support/Captured.h"
#include "support/Pixels.h"
#include "support/Poses.h"

#include <functional>

using namespace tarvos::core;
using namespace tarvos::core::cvdata;
using tarvos::math::SquareMatrix;
using tarvos::math::Vector;

namespace {

/// One object of every class, and a text that tells all of them apart by their content.
struct World {
    World() {
        blobs.mBlobs.resize(3);
        blobs.mBlobs[1].mMatrix1 = square;  // on the heap
        paint(*image.iplImage());
        paint(*mosaic.iplImage());
        square.fill(1.0);
        for (unsigned int i = 0; i < 6; ++i)
            square(i, i) = 3.0;
    }

    std::string content() const {
        std::ostringstream text;
        for (const Image* one : {&image, static_cast<const Image*>(&mosaic)})
            text << std::string(one->iplImage()->imageData, static_cast<std::size_t>(one->iplImage()->imageSize))
                 << one->channels() << one->width();
        for (const auto& blob : blobs.mBlobs)
            text << blob.mMatrix1 << blob.mMatrix2 << blob.mValues[1];
        for (const auto& component : model.mMixtures)
            text << component->mCovariance << component->mWeight;
        Vector packed(60);
        state.getStateData(packed);
        text << model.mEpsilon << histogram.data() << histogram.getBinsTotal() << square << packed
             << state.getTimeStamp() << parser.getValue("option") << contour.mPoints.size();
        return text.str();
    }

    Image image{5, 4, Image::CHANNELS_BGR, Image::BITS_8U};
    TiledImage mosaic{2, 2, 5, 4, Image::CHANNELS_BGR, Image::BITS_8U};
    SquareMatrix square{6};
    Blobs blobs;
    ColorGMM model{1, 2};
    ColourHist2d histogram{2, 2, 2};
    VisContourSamplePts contour;
    State state{VectorPose(20), 3};  // vectors on the heap
    char name[4] = "app";
    char* arguments[1] = {name};
    parser::CmdLineParser parser{1, arguments};
};

using Operation = std::pair<const char*, std::function<void(World&)>>;

const std::string LONG(40, 'x');

const std::vector<Operation> OPERATIONS = {
    {"ImageOfSize", [](World&) { Image(3, 3, Image::CHANNELS_GRAY, Image::BITS_8U); }},
    {"ImageCopy", [](World& w) { Image copy(w.image); }},
    {"ImageClone", [](World& w) { delete w.image.clone(); }},
    {"ImageAssignment", [](World& w) { w.image = w.mosaic; }},
    {"ImageMoveAssignment", [](World& w) { w.image = Image(w.mosaic); }},
    {"ImageResize", [](World& w) { w.image.resizeMemory(30, 30); }},
    {"TiledImageAssignment",
     [](World& w) { w.mosaic = TiledImage(1, 1, 8, 8, Image::CHANNELS_GRAY, Image::BITS_32F); }},
    {"TiledImageSetCell", [](World& w) { w.mosaic.setCellImage(1, 1, &w.image); }},
    {"BlobsCopyAndAssignment", [](World& w) { w.blobs = Blobs(w.blobs); }},
    {"BlobsAssignment",
     [](World& w) {
         World other;
         other.blobs.mBlobs[0].mVector.fill(7.0);
         w.blobs = static_cast<const Blobs&>(other.blobs);
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
         other.state.setTimeStamp(2.0);
         w.state = other.state;
     }},
    {"StateUnpack", [](World& w) { w.state.setIncDataFromVector(Vector(60), -1); }},
    {"MatrixAssignment", [](World& w) { w.square = SquareMatrix(7); }},
    {"MatrixInverse", [](World& w) { w.square = w.square.invert(SquareMatrix::INVERSION_LU); }},
    {"ParserRegistration", [](World& w) { w.parser.addOption("option", LONG, LONG, false); }},
    {"FilesystemExists", [](World&) { util::Filesystem::exists(LONG); }},
    {"FilesystemRm", [](World&) { util::Filesystem::rm(LONG); }},
    {"ResourcesFindFile", [](World&) { util::Resources(LONG, "app").findFile(LONG); }},
};

class AllocationFailureTest : public testing::TestWithParam<Operation> {};

/// Every allocation of the operation is made to fail once, each in a run of its own. (Not under valgrind, which
/// allocates in its own way.)
void sweep(const std::function<void(World&)>& operation) {
    World warm;
    operation(warm);  // sets up what is set up once in a process
    for (std::size_t n = 0;; ++n) {
        World world;
        const std::string before = world.content();
        const std::ptrdiff_t live = liveBlocks();
        try {
            failAllocationAfter(n);
            operation(world);
            if (noFailureHappened())
                break;
        } catch (const std::exception&) {  // std::bad_alloc, or the Exception of a file operation
            noFailureHappened();
        }
        ASSERT_EQ(liveBlocks(), live) << "allocation " << n << " leaks";
        ASSERT_EQ(world.content(), before) << "allocation " << n << " failed";
    }
}

TEST_P(AllocationFailureTest, ChangesNothingAndLosesNoMemory) {
    outputOf([] { errorsOf([] { sweep(GetParam().second); }); });
}

INSTANTIATE_TEST_SUITE_P(, AllocationFailureTest, testing::ValuesIn(OPERATIONS),
                         [](const auto& test) { return test.param.first; });

}  // namespace
