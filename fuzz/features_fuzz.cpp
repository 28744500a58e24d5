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
using Numbers = std::vector<double>;

struct Histogram {
    ColourHist2d histogram{2, 3, 1};
    std::array<unsigned char, 3> bins{2, 3, 1};
    Numbers entries = Numbers(6);

    void step(Input& input, const Histogram& other) {
        const int operation = input.below(4);
        Input::note("histogram: operation ", operation);
        if (operation == 0) {
            std::array<unsigned char, 3> wanted{};
            for (unsigned char& count : wanted)
                count = static_cast<unsigned char>(input.below(5));
            histogram.setBins(wanted[0], wanted[1], wanted[2]);
            if (wanted != bins)
                entries.assign(std::size_t{wanted[0]} * wanted[1] * wanted[2], 0.0);
            bins = wanted;
        } else if (operation == 1) {
            tarvos::math::Vector data(static_cast<unsigned int>(entries.size()));
            std::generate(data.begin(), data.end(), [&] { return input.byte(); });
            histogram.setData(data);
            entries.assign(data.begin(), data.end());
        } else if (operation == 2) {
            histogram.clear();
            entries.assign(entries.size(), 0.0);
        } else {
            histogram = ColourHist2d(other.histogram);
            bins = other.bins;
            entries = other.entries;
        }
    }
    void check() const {
        std::array<unsigned char, 3> read{};
        histogram.getBins(&read[0], &read[1], &read[2]);
        FUZZ_CHECK(read == bins && histogram.getBinsTotal() == entries.size());
        FUZZ_CHECK(std::equal(entries.begin(), entries.end(), histogram.data().begin(), histogram.data().end()));
    }
};

struct Mixture {
    ColorGMM mixture{1, 2};
    Numbers weights = {1.0};
    std::vector<unsigned int> dimensions = {2};

    void step(Input& input, const Mixture& other) {
        const int operation = input.below(4);
        Input::note("mixture: operation ", operation);
        if (operation == 0) {
            const auto count = static_cast<std::size_t>(input.below(6)), dim = static_cast<std::size_t>(input.below(5));
            mixture = ColorGMM(count, dim);
            weights.assign(count, 1.0);
            dimensions.assign(count, static_cast<unsigned int>(dim));
        } else if (operation == 1) {
            for (std::size_t i = 0; i < weights.size(); ++i)
                mixture.mMixtures[i]->mWeight = static_cast<float>(weights[i] = input.byte());
        } else if (operation == 2) {
            mixture = ColorGMM::skin();
            weights = {static_cast<double>(0.5027F), static_cast<double>(0.4973F)};
            dimensions = {2, 2};
        } else {
            mixture = other.mixture;
            weights = other.weights;
            dimensions = other.dimensions;
        }
    }
    void check() const {
        FUZZ_CHECK(mixture.dimension() == weights.size());
        for (std::size_t i = 0; i < weights.size(); ++i) {
            const GM& component = *mixture.mMixtures[i];
            FUZZ_CHECK(static_cast<double>(component.mWeight) == weights[i]);
            FUZZ_CHECK(component.mDim == dimensions[i] && component.mMean.dimension() == dimensions[i]);
            FUZZ_CHECK(component.mCovariance.dimension() == dimensions[i] * dimensions[i]);
        }
    }
};

struct List {
    Blobs blobs;
    std::vector<int> labels;  ///< also the size of each record's first matrix

    void step(Input& input, const List& other) {
        const int operation = input.below(4);
        Input::note("blobs: operation ", operation);
        if (operation < 2) {
            blobs.addBlob();
            const int label = input.below(6);
            blobs.mBlobs.back().mField1 = label;
            blobs.mBlobs.back().mMatrix1 = tarvos::math::SquareMatrix(static_cast<unsigned int>(label));
            labels.push_back(label);
        } else if (operation == 2) {
            blobs.clear();
            labels.clear();
        } else {
            const Blobs::BlobInfo* first = blobs.mBlobs.data();
            const bool fits = other.labels.size() <= blobs.mBlobs.capacity();
            blobs = other.blobs;
            labels = other.labels;
            FUZZ_CHECK(!fits || blobs.mBlobs.data() == first);
        }
    }
    void check() const {
        FUZZ_CHECK(blobs.dimension() == labels.size());
        for (std::size_t i = 0; i < labels.size(); ++i) {
            FUZZ_CHECK(blobs.mBlobs[i].mField1 == labels[i]);
            FUZZ_CHECK(blobs.mBlobs[i].mMatrix1.rows() == static_cast<unsigned int>(labels[i]));
        }
    }
};

/// Contours are not assigned: a vector of them grows and is cleared.
struct Contours {
    std::vector<VisContourSamplePts> contours;
    std::vector<std::size_t> points;

    void step(Input& input, const Contours& /*other*/) {
        const auto count = static_cast<std::size_t>(input.below(5));
        Input::note("contours: one of ", count, " points");
        contours.emplace_back();
        contours.back().mPoints.resize(count);
        for (VisContourSamplePts::CPOINT& point : contours.back().mPoints)
            contours.back().mEdges.emplace_back().mPointRefs = {&point};
        points.push_back(count);
    }
    void check() const {
        for (std::size_t i = 0; i < points.size(); ++i) {
            FUZZ_CHECK(contours[i].mPoints.size() == points[i] && contours[i].mEdges.size() == points[i]);
            for (std::size_t k = 0; k < points[i]; ++k)
                FUZZ_CHECK(contours[i].mEdges[k].mPointRefs[0] == &contours[i].mPoints[k]);
        }
    }
};

template <typename Model>
void step(Input& input, Model (&models)[2]) {
    const int target = input.below(2);
    models[target].step(input, models[1 - target]);
    for (const Model& model : models)
        model.check();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    Input input(bytes, size);
    Histogram histograms[2];
    Mixture mixtures[2];
    List lists[2];
    Contours contours[2];
    while (!input.atEnd()) {
        switch (input.below(4)) {
            case 0:
                step(input, histograms);
                break;
            case 1:
                step(input, mixtures);
                break;
            case 2:
                step(input, lists);
                break;
            default:
                step(input, contours);
        }
    }
    return 0;
}
