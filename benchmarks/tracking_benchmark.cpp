/// @file
/// States and features beside the plain structures that one would write instead.

#include "Comparison.h"

#include <Eigen/Dense>
#include <boost/make_shared.hpp>
#include <tarvos/core/cvdata/features/Blobs.h>
#include <tarvos/core/cvdata/features/ColorGMM.h>
#include <tarvos/core/cvdata/features/ColourHist2d.h>
#include <tarvos/core/cvdata/pose/VectorPose.h>
#include <tarvos/core/trackingdata/State.h>

#include <array>
#include <cstdint>
#include <malloc.h>
#include <memory>
#include <vector>

namespace {

using comparison::compare;
using Eigen::VectorXd;
using tarvos::core::State;
using tarvos::core::cvdata::Blobs;
using tarvos::core::cvdata::ColorGMM;
using tarvos::core::cvdata::ColourHist2d;
using tarvos::core::cvdata::VectorPose;
using tarvos::math::Vector;

constexpr int DOF = 6;

/// A target's state as one would write it with Eigen.
struct PlainState {
    explicit PlainState(int order) : derivatives(static_cast<std::size_t>(order - 1), VectorXd::Zero(DOF)) {}
    PlainState(const PlainState& other)
        : pose(std::make_unique<VectorXd>(*other.pose)), derivatives(other.derivatives), time(other.time) {}
    PlainState& operator=(const PlainState& other) {
        *pose = *other.pose;
        derivatives = other.derivatives;
        time = other.time;
        return *this;
    }

    void pack(VectorXd& packed) const {
        packed.head(DOF) = *pose;
        for (std::size_t i = 0; i < derivatives.size(); ++i)
            packed.segment(DOF * (static_cast<Eigen::Index>(i) + 1), DOF) = derivatives[i];
    }
    void unpack(const VectorXd& packed) {
        *pose = packed.head(DOF);
        for (std::size_t i = 0; i < derivatives.size(); ++i)
            derivatives[i] = packed.segment(DOF * (static_cast<Eigen::Index>(i) + 1), DOF);
    }

    std::unique_ptr<VectorXd> pose = std::make_unique<VectorXd>(VectorXd::Zero(DOF));
    std::vector<VectorXd> derivatives;
    double time = 0.0;
};

void addStates(int order, double packGoal, double unpackGoal) {
    const std::string of = ", order " + std::to_string(order);
    const auto state = std::make_shared<State>(VectorPose(DOF), order);
    const auto other = std::make_shared<State>(VectorPose(DOF), order);
    const auto plain = std::make_shared<PlainState>(order);
    const auto plainOther = std::make_shared<PlainState>(order);
    Vector packed(static_cast<unsigned int>(order * DOF));
    VectorXd plainPacked = VectorXd::Zero(order * DOF);
    compare(
        "State pack" + of, "VectorXd segments", packGoal, [=]() mutable { state->getStateIncData(packed, -1); },
        [=]() mutable { plain->pack(plainPacked); });
    compare(
        "State unpack" + of, "VectorXd segments", unpackGoal,
        [=]() mutable { state->setIncDataFromVector(packed, -1); }, [=]() mutable { plain->unpack(plainPacked); });
    compare(
        "State copy" + of, "plain struct", 1.5,
        [=] {
            const State copy(*state);
            benchmark::DoNotOptimize(copy.pose());
        },
        [=] {
            const PlainState copy(*plain);
            benchmark::DoNotOptimize(copy.pose.get());
        });
    compare(
        "State assignment" + of, "plain struct", 2.0, [=] { *other = *state; }, [=] { *plainOther = *plain; });
}

void addOrders() {
    const auto state = std::make_shared<State>(VectorPose(DOF), 3);
    const auto one = std::make_shared<Vector>(DOF);
    const VectorXd source = VectorXd::Zero(DOF);
    const auto target = std::make_shared<VectorXd>(VectorXd::Zero(DOF));
    for (const int order : {0, 2}) {
        const std::string which = " order " + std::to_string(order) + " of a State";
        compare(
            "get" + which, "VectorXd assignment", 2.0, [=] { state->getStateIncData(*one, order); },
            [=] { *target = source; });
        compare(
            "set" + which, "VectorXd assignment", 2.0, [=] { state->setIncDataFromVector(*one, order); },
            [=] { *target = source; });
    }
}

struct PlainComponent {
    Eigen::Matrix3d covariance, inverse;
    Eigen::Vector3d mean;
    float determinant, weight;
};
boost::shared_ptr<PlainComponent> copyOf(const boost::shared_ptr<PlainComponent>& component) {
    return boost::make_shared<PlainComponent>(*component);
}
std::shared_ptr<PlainComponent> copyOf(const std::shared_ptr<PlainComponent>& component) {
    return std::make_shared<PlainComponent>(*component);
}

template <typename Mixture>
Mixture deepCopy(const Mixture& mixture) {
    Mixture copy;
    copy.reserve(mixture.size());
    for (const auto& component : mixture)
        copy.push_back(copyOf(component));
    return copy;
}

/// Beside components in the same kind of pointer, and in std::shared_ptr, which spares the atomic operations as long as
/// a process has one thread.
template <template <typename> class Pointer>
void addMixtures(const std::string& pointer) {
    const auto model = std::make_shared<ColorGMM>(8, 3);
    const auto other = std::make_shared<ColorGMM>(8, 3);
    std::vector<Pointer<PlainComponent>> plain;
    for (int i = 0; i < 8; ++i)
        plain.emplace_back(new PlainComponent());
    const auto plainOther = std::make_shared<std::vector<Pointer<PlainComponent>>>(deepCopy(plain));
    compare(
        "ColorGMM copy, 8 of dimension 3", "structs in " + pointer, 1.3,
        [=] {
            const ColorGMM copy(*model);
            benchmark::DoNotOptimize(copy.mMixtures.data());
        },
        [=] {
            const auto copy = deepCopy(plain);
            benchmark::DoNotOptimize(copy.data());
        });
    compare(
        "ColorGMM assignment, 8 of dimension 3", "structs in " + pointer, 1.3, [=] { *other = *model; },
        [=] { *plainOther = deepCopy(plain); });
}

struct PlainBlob {
    std::array<double, 5> values{};
    std::int32_t label = 0;
    std::int32_t area = 0;
    std::array<std::int32_t, 4> box{};
    Eigen::Matrix2d covariance = Eigen::Matrix2d::Zero();
    Eigen::Matrix2d inverse = Eigen::Matrix2d::Zero();
    Eigen::Vector2d centroid = Eigen::Vector2d::Zero();
};

void addBlobs(std::size_t count) {
    const std::string of = ", " + std::to_string(count) + " records";
    const auto blobs = std::make_shared<Blobs>();
    blobs->mBlobs.resize(count);
    const auto other = std::make_shared<Blobs>(*blobs);
    const auto plain = std::make_shared<std::vector<PlainBlob>>(count);
    const auto plainOther = std::make_shared<std::vector<PlainBlob>>(count);
    compare(
        "Blobs assignment" + of, "std::vector", 3.0, [=] { *other = *blobs; }, [=] { *plainOther = *plain; });
    compare(
        "Blobs growth" + of, "std::vector", 3.0,
        [count] {
            Blobs grown;
            for (std::size_t i = 0; i < count; ++i)
                grown.addBlob();
            benchmark::DoNotOptimize(grown.mBlobs.data());
        },
        [count] {
            std::vector<PlainBlob> grown;
            for (std::size_t i = 0; i < count; ++i)
                grown.emplace_back();
            benchmark::DoNotOptimize(grown.data());
        });
}

void addHistograms() {
    const auto source = std::make_shared<ColourHist2d>(32, 32, 32);
    const auto target = std::make_shared<ColourHist2d>(32, 32, 32);
    const std::vector<double> plain(std::size_t{32} * 32 * 32);
    const auto plainTarget = std::make_shared<std::vector<double>>(plain);
    compare(
        "ColourHist2d assignment, 32x32x32", "std::vector", 1.2, [=] { *target = *source; },
        [=] { *plainTarget = plain; });
}

}  // namespace

int main(int argc, char** argv) {
    // Memory is kept, for both sides: lists of 10,000 records would otherwise measure the kernel's page faults.
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    addStates(1, 2.0, 4.0);
    addStates(3, 1.5, 2.0);
    addOrders();
    addMixtures<boost::shared_ptr>("boost::shared_ptr");
    addMixtures<std::shared_ptr>("std::shared_ptr");
    for (const std::size_t count : {10U, 1000U, 10000U})
        addBlobs(count);
    addHistograms();
    return comparison::run(argc, argv);
}
