#pragma once

#include "core/cvdata/MatView.h"
#include "core/cvdata/TiledImage.h"
#include "core/cvdata/features/Blobs.h"
#include "core/cvdata/features/ColorGMM.h"
#include "core/cvdata/features/ColourHist2d.h"
#include "core/cvdata/pose/VectorPose.h"
#include "core/trackingdata/State.h"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

/// What the tests of all classes need of each: make<T>() of a size, change() by a seed, and members() as text.
namespace values {

using namespace tarvos::core;
using namespace tarvos::core::cvdata;

/// The members of an object, each a line of its name and its value.
struct Members : std::vector<std::string> {
    template <typename T>
    Members& add(const std::string& name, const T& value) {
        std::ostringstream line;
        line << name << " " << value;
        push_back(line.str());
        std::replace(back().begin(), back().end(), '\n', ' ');
        return *this;
    }
};

inline void change(Image& image, int seed) {
    matView(image).setTo(cv::Scalar(seed, seed + 1, seed + 2));
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
        blob.mValues[4] = ++seed;
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
        return {static_cast<unsigned char>(size), 2, 5};
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
    return Members()
        .add("widthStep", image.widthStep())
        .add("header's widthStep", image.iplImage()->widthStep)
        .add("pixels", matView(image));
}
inline Members members(const GM& component) {
    return Members()
        .add("mCovariance", component.mCovariance)
        .add("mCovarianceInverse", component.mCovarianceInverse)
        .add("mMean", component.mMean)
        .add("mDim", component.mDim)
        .add("mWeight", component.mWeight)
        .add("mDeterminant", component.mDeterminant);
}
inline Members members(const ColorGMM& model) {
    Members all = Members().add("mEpsilon", model.mEpsilon).add("dimension", model.dimension());
    for (const auto& component : model.mMixtures)
        for (const std::string& member : members(*component))
            all.push_back(member);
    return all;
}
inline Members members(const ColourHist2d& histogram) {
    struct Shown : ColourHist2d {
        static unsigned int planeBins(const ColourHist2d& shown) { return shown.*&Shown::mPlaneBins; }
    };
    return Members()
        .add("getBinsTotal", histogram.getBinsTotal())
        .add("mPlaneBins", Shown::planeBins(histogram))
        .add("data", histogram.data());
}
inline Members members(const Blobs& blobs) {
    Members all = Members().add("dimension", blobs.dimension());
    for (const Blobs::BlobInfo& blob : blobs.mBlobs)
        all.add("mValues", blob.mValues[4])
            .add("mMatrix1", blob.mMatrix1)
            .add("mMatrix2", blob.mMatrix2)
            .add("mVector", blob.mVector);
    return all;
}
inline Members members(const State& state) {
    return Members().add("time stamp", state.getTimeStamp()).add("data", state);
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
