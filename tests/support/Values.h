#pragma once

#include "core/cvdata/MatView.h"
#include "core/cvdata/TiledImage.h"
#include "core/cvdata/features/Blobs.h"
#include "core/cvdata/features/ColorGMM.h"
#include "core/cvdata/features/ColourHist2d.h"
#include "core/cvdata/pose/VectorPose.h"
#include "core/trackingdata/State.h"

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

/// The members of an object, each a line of its name and its value.
struct Members : std::vector<std::string> {
    template <typename T>
    Members& add(const std::string& name, const T& value) {
        std::ostringstream line;
        line << name << " " << value;
        push_back(line.str());
        return *this;
    }
};

/// What the tests for all classes know about one: how to make an object of some size, to change every member, and to
/// read them; a mark that copies treat in a special way; an address that an assignment keeps.
template <typename T>
struct Value;

template <typename T>
struct FeatureValue {
    static void mark(T& feature) { feature.mFlag = true; }
    static bool isMarked(const T& feature) { return feature.mFlag; }
};

template <>
struct Value<tarvos::core::cvdata::Image> {
    using Image = tarvos::core::cvdata::Image;
    static Image make(int size) {
        Image image(size + 4, 2, Image::CHANNELS_BGR, Image::BITS_16U);
        change(image, size);
        return image;
    }
    static void change(Image& image, int seed) { matView(image).setTo(cv::Scalar(seed, seed + 1, seed + 2)); }
    static Members members(const Image& image) {
        return Members()
            .add("widthStep", image.widthStep())
            .add("channels", image.channels())
            .add("bitsPerChannel", image.bitsPerChannel())
            .add("header's widthStep", image.iplImage()->widthStep)
            .add("pixels", matView(image));
    }
    static void mark(Image& image) { image.setTimeStamp(7); }
    static bool isMarked(const Image& image) { return image.getTimeStamp() == 7; }
    static const void* address(const Image& image) { return image.iplImage(); }
};

template <>
struct Value<tarvos::core::cvdata::TiledImage> : Value<tarvos::core::cvdata::Image> {
    using TiledImage = tarvos::core::cvdata::TiledImage;
    static TiledImage make(int size) {
        TiledImage mosaic(2, 2, static_cast<std::size_t>(size), 3, Image::CHANNELS_BGR, Image::BITS_8U);
        matView(mosaic).setTo(cv::Scalar::all(size));
        return mosaic;
    }
    static void change(TiledImage& mosaic, int seed) {
        Image cell(mosaic.width() / 2, mosaic.height() / 2, Image::CHANNELS_BGR, Image::BITS_8U);
        matView(cell).setTo(cv::Scalar::all(seed));
        mosaic.setCellImage(1, 1, &cell);
    }
};

template <>
struct Value<tarvos::core::cvdata::GM> {
    using GM = tarvos::core::cvdata::GM;
    static GM make(int size) {
        GM component(static_cast<unsigned int>(size));
        change(component, size);
        return component;
    }
    static void change(GM& component, int seed) {
        component.mCovariance.fill(seed);
        component.mCovarianceInverse.fill(seed + 0.25);
        component.mMean.fill(seed + 0.5);
        component.mWeight = component.mDeterminant = static_cast<float>(seed);
    }
    static Members members(const GM& component) {
        return Members()
            .add("mCovariance", component.mCovariance)
            .add("mCovarianceInverse", component.mCovarianceInverse)
            .add("mMean", component.mMean)
            .add("mDim", component.mDim)
            .add("mWeight", component.mWeight)
            .add("mDeterminant", component.mDeterminant);
    }
};

template <>
struct Value<tarvos::core::cvdata::ColorGMM> : FeatureValue<tarvos::core::cvdata::ColorGMM> {
    using ColorGMM = tarvos::core::cvdata::ColorGMM;
    using Component = Value<tarvos::core::cvdata::GM>;
    static ColorGMM make(int size) {
        ColorGMM model(static_cast<std::size_t>(size), 4);
        change(model, size);
        return model;
    }
    static void change(ColorGMM& model, int seed) {
        model.mEpsilon = seed;
        for (const auto& component : model.mMixtures)
            Component::change(*component, ++seed);
    }
    static Members members(const ColorGMM& model) {
        Members all = Members().add("mEpsilon", model.mEpsilon).add("dimension", model.dimension());
        for (const auto& component : model.mMixtures)
            for (const std::string& member : Component::members(*component))
                all.push_back(member);
        return all;
    }
    static const void* address(const ColorGMM& model) { return model.mMixtures.data(); }
};

template <>
struct Value<tarvos::core::cvdata::ColourHist2d> : FeatureValue<tarvos::core::cvdata::ColourHist2d> {
    using ColourHist2d = tarvos::core::cvdata::ColourHist2d;
    /// Shows the protected size of a plane.
    struct Shown : ColourHist2d {
        explicit Shown(const ColourHist2d& histogram) : ColourHist2d(histogram) {}
        unsigned int planeBins() const { return mPlaneBins; }
    };
    static ColourHist2d make(int size) {
        ColourHist2d histogram(static_cast<unsigned char>(size), 2, 5);
        change(histogram, size);
        return histogram;
    }
    static void change(ColourHist2d& histogram, int seed) { histogram.data().fill(seed); }
    static Members members(const ColourHist2d& histogram) {
        return Members()
            .add("getBinsTotal", histogram.getBinsTotal())
            .add("mPlaneBins", Shown(histogram).planeBins())
            .add("data", histogram.data());
    }
    static const void* address(const ColourHist2d& histogram) { return &histogram.data(); }
};

template <>
struct Value<tarvos::core::cvdata::Blobs> : FeatureValue<tarvos::core::cvdata::Blobs> {
    using Blobs = tarvos::core::cvdata::Blobs;
    static Blobs make(int size) {
        Blobs blobs;
        while (blobs.dimension() < static_cast<std::size_t>(size))
            blobs.addBlob();
        change(blobs, size);
        return blobs;
    }
    static void change(Blobs& blobs, int seed) {
        for (Blobs::BlobInfo& blob : blobs.mBlobs) {
            blob.mField1 = blob.mField2 = blob.mBlock[3] = ++seed;
            blob.mValues[4] = seed;
            blob.mMatrix1 = tarvos::math::SquareMatrix(static_cast<unsigned int>(seed % 7));
            blob.mMatrix2.fill(seed);
            blob.mVector.fill(seed);
        }
    }
    static Members members(const Blobs& blobs) {
        Members members = Members().add("dimension", blobs.dimension());
        for (const Blobs::BlobInfo& blob : blobs.mBlobs)
            members.add("mValues", blob.mValues[4])
                .add("mField1", blob.mField1)
                .add("mField2", blob.mField2)
                .add("mBlock", blob.mBlock[3])
                .add("mMatrix1", blob.mMatrix1)
                .add("mMatrix2", blob.mMatrix2)
                .add("mVector", blob.mVector);
        return members;
    }
    static const void* address(const Blobs& blobs) { return blobs.mBlobs.data(); }
};

template <>
struct Value<tarvos::core::State> {
    using State = tarvos::core::State;
    static State make(int size) {
        State state(tarvos::core::cvdata::VectorPose(12), 3);  // of a size that vectors keep on the heap
        change(state, size);
        return state;
    }
    static void change(State& state, int seed) {
        tarvos::math::Vector data(static_cast<unsigned int>(state.stateDimension()));
        std::generate(data.begin(), data.end(), [&] { return ++seed; });
        state.setDataFromVector(data, -1);
        state.setTimeStamp(seed);
    }
    static Members members(const State& state) {
        return Members().add("time stamp", state.getTimeStamp()).add("data", state);
    }
    static const void* address(const State& state) { return state.pose(); }
};

/// The first member of @p object that is not as expected; empty if there is none.
template <typename T>
std::string difference(const T& object, const Members& expected) {
    Members actual = Value<T>::members(object);
    const auto [first, second] = std::mismatch(actual.begin(), actual.end(), expected.begin(), expected.end());
    if (first == actual.end() && second == expected.end())
        return "";
    return (first != actual.end() ? *first : "a lack") + ", not " + (second != expected.end() ? *second : "there");
}
template <typename T>
std::string difference(const T& object, const T& expected) {
    return difference(object, Value<T>::members(expected));
}
