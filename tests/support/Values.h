#pragma once

#include <tarvos/core/cvdata/MatView.h>
#include <tarvos/core/cvdata/TiledImage.h>
#include <tarvos/core/cvdata/features/Blobs.h>
#include <tarvos/core/cvdata/features/ColorGMM.h>
#include <tarvos/core/cvdata/features/ColourHist2d.h>
#include <tarvos/core/cvdata/pose/VectorPose.h>
#include <tarvos/core/trackingdata/State.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <string>
#include <type_traits>
#include <vector>

/// What the tests of all classes need of each: make<T>() of a size, change() by a seed, and members() as text.
namespace values {

using namespace tarvos::core;
using namespace tarvos::core::cvdata;

/// The members of an object, each a line of its name and its value with all digits.
struct Members : std::vector<std::string> {
    Members& add(const std::string& name, double value) {
        char text[32];
        std::snprintf(text, sizeof text, " %.17g", value);
        push_back(name + text);
        return *this;
    }
    /// The elements of @p range, each a member.
    template <typename Range>
    Members& addAll(const std::string& name, const Range& range) {
        add(name + ".size", static_cast<double>(std::distance(std::begin(range), std::end(range))));
        int i = 0;
        for (const auto& element : range)
            add(name + "[" + std::to_string(i++) + "]", static_cast<double>(element));
        return *this;
    }
};

inline void change(Image& image, int seed) {
    for (int y = 0; y < image.height(); ++y)
        std::fill_n(image.row(y), image.widthStep(), static_cast<unsigned char>(seed + y));
}
inline void change(TiledImage& mosaic, int seed) {
    change(static_cast<Image&>(mosaic), seed + 1);
    const int size = cvRound(std::sqrt(mosaic.width()));  // of its cells, and of its grid
    Image cell(size, size, Image::CHANNELS_BGR, Image::BITS_8U);
    change(cell, seed);
    mosaic.setCellImage(static_cast<std::size_t>(size - 1), static_cast<std::size_t>(size - 1), &cell);
}
inline void change(GM& component, int seed) {
    component.mCovariance.fill(seed);
    component.mCovarianceInverse.fill(seed + 0.25);
    component.mMean.fill(seed + 0.5);
    component.mWeight = static_cast<float>(seed);
    component.mDeterminant = component.mWeight + 1.0F;
}
inline void change(ColorGMM& model, int seed) {
    model.mEpsilon = seed;
    for (const auto& component : model.mMixtures)
        change(*component, ++seed);
}
inline void change(ColourHist2d& histogram, int seed) {
    histogram.data().fill(seed);
}
inline void change(Blobs& blobs, int seed) {
    for (Blobs::BlobInfo& blob : blobs.mBlobs) {
        for (double& value : blob.mValues)
            value = ++seed + 1e-9;
        blob.mField1 = ++seed;
        blob.mField2 = ++seed;
        for (std::int32_t& value : blob.mBlock)
            value = ++seed;
        blob.mMatrix1 = tarvos::math::SquareMatrix(static_cast<unsigned int>(seed % 7));
        blob.mMatrix2.fill(seed);
        blob.mVector.fill(seed);
    }
}
inline void change(State& state, int seed) {
    tarvos::math::Vector data(static_cast<unsigned int>(state.stateDimension()));
    std::generate(data.begin(), data.end(), [&] { return ++seed; });
    state.setDataFromVector(data, -1);
    state.setTimeStamp(seed);
}

template <typename T>
T make(int size) {
    const auto count = static_cast<std::size_t>(size), more = count + 1;
    if constexpr (std::is_same_v<T, Image>)
        return {size + 4, 2, Image::CHANNELS_BGR, Image::BITS_16U};
    else if constexpr (std::is_same_v<T, TiledImage>)
        return {more, more, more, more, Image::CHANNELS_BGR, Image::BITS_8U};
    else if constexpr (std::is_same_v<T, GM>)
        return GM(static_cast<unsigned int>(size));
    else if constexpr (std::is_same_v<T, ColorGMM>)
        return {count, 4};
    else if constexpr (std::is_same_v<T, ColourHist2d>)
        return {size, 2, 5};
    else if constexpr (std::is_same_v<T, State>)
        return {VectorPose(12), 3};  // of a size that vectors keep on the heap
    else {
        T blobs;
        blobs.mBlobs.resize(count);
        return blobs;
    }
}
/// An object of size @p size with a value.
template <typename T>
T makeChanged(int size) {
    T object = make<T>(size);
    change(object, size);
    return object;
}

inline Members members(const Image& image) {
    const std::string bytes(reinterpret_cast<const char*>(image.imageBuffer()),
                            static_cast<std::size_t>(image.widthStep() * image.height()));
    return Members()
        .add("width", image.width())
        .add("height", image.height())
        .add("channels", image.channels())
        .add("bitsPerChannel", image.bitsPerChannel())
        .add("widthStep", image.widthStep())
        .add("header's widthStep", image.iplImage()->widthStep)
        .addAll("imageBuffer", bytes);
}
inline Members members(const GM& component) {
    return Members()
        .addAll("mCovariance", component.mCovariance)
        .addAll("mCovarianceInverse", component.mCovarianceInverse)
        .addAll("mMean", component.mMean)
        .add("mDim", component.mDim)
        .add("mWeight", component.mWeight)
        .add("mDeterminant", component.mDeterminant);
}
inline Members members(const ColorGMM& model) {
    Members all = Members().add("mEpsilon", model.mEpsilon).add("dimension", static_cast<double>(model.dimension()));
    for (const auto& component : model.mMixtures)
        for (const std::string& member : members(*component))
            all.push_back(member);
    return all;
}
inline Members members(const ColourHist2d& histogram) {
    struct Shown : ColourHist2d {
        using ColourHist2d::operator=;
        static unsigned int planeBins(const ColourHist2d& shown) { return shown.*&Shown::mPlaneBins; }
    };
    unsigned char bins[3];
    histogram.getBins(&bins[0], &bins[1], &bins[2]);
    return Members()
        .addAll("getBins", bins)
        .add("mPlaneBins", Shown::planeBins(histogram))
        .addAll("data", histogram.data());
}
inline Members members(const Blobs& blobs) {
    Members all = Members().add("dimension", static_cast<double>(blobs.dimension()));
    for (const Blobs::BlobInfo& blob : blobs.mBlobs)
        all.addAll("mValues", blob.mValues)
            .add("mField1", blob.mField1)
            .add("mField2", blob.mField2)
            .addAll("mBlock", blob.mBlock)
            .addAll("mMatrix1", blob.mMatrix1)
            .addAll("mMatrix2", blob.mMatrix2)
            .addAll("mVector", blob.mVector);
    return all;
}
inline Members members(const State& state) {
    tarvos::math::Vector data(static_cast<unsigned int>(state.stateDimension()));
    state.getStateData(data);
    return Members().add("time stamp", state.getTimeStamp()).addAll("data", data);
}

/// The first member of @p object that is not as expected; empty if there is none.
template <typename T>
std::string difference(const T& object, const Members& expected) {
    const Members actual = members(object);
    const auto [first, second] = std::mismatch(actual.begin(), actual.end(), expected.begin(), expected.end());
    if (first == actual.end() && second == expected.end())
        return "";
    return (first != actual.end() ? *first : "it ends") + ", not " + (second != expected.end() ? *second : "its end");
}

}  // namespace values
