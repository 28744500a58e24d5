/// @file
/// Programs over two features of each class: whatever went before, each is what the last operation on it made.

#include "Input.h"
#include "support/Values.h"

#include <tarvos/core/cvdata/features/VisContourSamplePts.h>

#include <memory>
#include <utility>
#include <vector>

namespace {

using namespace values;

/// Gives a feature another size, and zeros, by the operations of its class.
void resize(ColourHist2d& histogram, int size) {
    histogram.setBins(static_cast<unsigned char>(size), 2, 5);
    histogram.clear();
}
void resize(ColorGMM& model, int size) {
    model = ColorGMM(static_cast<std::size_t>(size), 4);
}
void resize(Blobs& blobs, int size) {
    blobs.clear();
    while (blobs.dimension() < static_cast<std::size_t>(size))
        blobs.addBlob();
}

template <typename T>
struct Pair {
    std::unique_ptr<T> features[2] = {std::make_unique<T>(make<T>(1)), std::make_unique<T>(make<T>(2))};
    Members expected[2] = {members(*features[0]), members(*features[1])};
    bool flags[2] = {};

    void step(const char* name, Input& input) {
        static const char* const OPERATIONS[] = {"resize to ",   "change to ", "flag, ",
                                                 "assign from ", "copy of ",   "move from "};
        const int operation = input.below(6), to = input.below(2), size = input.below(5), from = size % 2;
        Input::note(name, " ", to, ": ", OPERATIONS[operation], operation < 3 ? size : from);
        T& target = *features[to];
        if (operation == 0) {
            resize(target, size);
            expected[to] = members(make<T>(size));
        } else if (operation == 1) {
            change(target, size);
            expected[to] = members(target);
        } else if (operation == 2) {
            target.mFlag = flags[to] = from == 1;
        } else if (operation == 3) {
            target = *features[from];
            expected[to] = expected[from];
        } else if (from != to) {
            const bool isMove = operation == 5;
            features[to] =
                isMove ? std::make_unique<T>(std::move(*features[from])) : std::make_unique<T>(*features[from]);
            flags[to] = isMove && flags[from];
            expected[to] = expected[from];
            *features[from] = *features[to];  // of what was moved from
        }
        for (int i = 0; i < 2; ++i)
            FUZZ_CHECK(difference(*features[i], expected[i]).empty() && features[i]->mFlag == flags[i]);
    }
};

/// Contours are not assigned: a vector of them grows, and edges keep pointing to their points.
void grow(Input& input, std::vector<VisContourSamplePts>& contours) {
    VisContourSamplePts& contour = contours.emplace_back();
    contour.mPoints.resize(static_cast<std::size_t>(input.below(5)));
    for (VisContourSamplePts::CPOINT& point : contour.mPoints)
        contour.mEdges.emplace_back().mPointRefs = {&point};
    Input::note("contours: ", contours.size());
    for (const VisContourSamplePts& each : contours)
        for (std::size_t i = 0; i < each.mPoints.size(); ++i)
            FUZZ_CHECK(each.mEdges[i].mPointRefs[0] == &each.mPoints[i]);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    Input input(bytes, size);
    Pair<ColourHist2d> histograms;
    Pair<ColorGMM> mixtures;
    Pair<Blobs> lists;
    std::vector<VisContourSamplePts> contours;
    while (!input.atEnd()) {
        const int kind = input.below(4);
        if (kind == 0)
            histograms.step("histogram", input);
        else if (kind == 1)
            mixtures.step("mixture", input);
        else if (kind == 2)
            lists.step("blobs", input);
        else
            grow(input, contours);
    }
    return 0;
}
