/// @file
/// Programs over two features of each class, beside models in plain vectors.

#include "Input.h"
#include "core/cvdata/features/Blobs.h"
#include "core/cvdata/features/ColorGMM.h"
#include "core/cvdata/features/ColourHist2d.h"
#include "core/cvdata/features/VisContourSamplePts.h"

#include <algorithm>
#include <array>
#include <vector>

namespace {

using namespace tarvos::core::cvdata;

struct Histogram {
    ColourHist2d feature{2, 3, 1};
    std::array<unsigned char, 3> bins{2, 3, 1};
    std::vector<double> entries = std::vector<double>(6);

    void change(Input& input) {
        const auto previous = bins;
        for (unsigned char& count : bins)
            count = static_cast<unsigned char>(input.below(3));
        feature.setBins(bins[0], bins[1], bins[2]);
        if (bins != previous)
            entries.assign(std::size_t{bins[0]} * bins[1] * bins[2], 0.0);
        check();
        tarvos::math::Vector data(static_cast<unsigned int>(entries.size()));
        data.fill(input.byte());
        feature.setData(data);
        entries.assign(data.begin(), data.end());
    }
    void clear() {
        feature.clear();
        entries.assign(entries.size(), 0.0);
    }
    void check() const {
        std::array<unsigned char, 3> read{};
        feature.getBins(&read[0], &read[1], &read[2]);
        FUZZ_CHECK(read == bins && feature.getBinsTotal() == entries.size());
        FUZZ_CHECK(std::equal(entries.begin(), entries.end(), feature.data().begin(), feature.data().end()));
    }
};

struct Mixture {
    ColorGMM feature{1, 2};
    std::vector<unsigned int> dimensions = {2};

    void change(Input& input) {
        dimensions.assign(static_cast<std::size_t>(input.below(6)), static_cast<unsigned int>(input.below(5)));
        feature = ColorGMM(dimensions.size(), dimensions.empty() ? 0 : dimensions[0]);
    }
    void clear() {
        feature = ColorGMM::skin();
        dimensions = {2, 2};
    }
    void check() const {
        FUZZ_CHECK(feature.dimension() == dimensions.size());
        for (std::size_t i = 0; i < dimensions.size(); ++i) {
            const GM& component = *feature.mMixtures[i];
            FUZZ_CHECK(component.mDim == dimensions[i] && component.mMean.dimension() == dimensions[i]);
            FUZZ_CHECK(component.mCovariance.rows() == dimensions[i]);
        }
    }
};

struct List {
    Blobs feature;
    std::vector<int> labels;  ///< also the size of each record's first matrix

    void change(Input& input) {
        labels.push_back(input.below(6));
        feature.addBlob();
        feature.mBlobs.back().mField1 = labels.back();
        feature.mBlobs.back().mMatrix1 = tarvos::math::SquareMatrix(static_cast<unsigned int>(labels.back()));
    }
    void clear() {
        feature.clear();
        labels.clear();
    }
    void check() const {
        FUZZ_CHECK(feature.dimension() == labels.size());
        for (std::size_t i = 0; i < labels.size(); ++i)
            FUZZ_CHECK(feature.mBlobs[i].mField1 == labels[i] &&
                       feature.mBlobs[i].mMatrix1.rows() == static_cast<unsigned int>(labels[i]));
    }
};

template <typename Model>
void step(const char* name, Input& input, Model (&models)[2]) {
    Model& target = models[input.below(2)];
    const int operation = input.below(3);
    Input::note(name, operation == 0 ? ": change" : operation == 1 ? ": clear" : ": assign");
    if (operation == 0)
        target.change(input);
    else if (operation == 1)
        target.clear();
    else
        target = models[input.below(2)];
    for (const Model& model : models)
        model.check();
}

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
    Histogram histograms[2];
    Mixture mixtures[2];
    List lists[2];
    std::vector<VisContourSamplePts> contours;
    while (!input.atEnd()) {
        const int kind = input.below(4);
        if (kind == 0)
            step("histogram", input, histograms);
        else if (kind == 1)
            step("mixture", input, mixtures);
        else if (kind == 2)
            step("blobs", input, lists);
        else
            grow(input, contours);
    }
    return 0;
}
