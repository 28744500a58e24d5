#include "core/trackingdata/State.h"

#include "support/Allocations.h"
#include "support/ContractDeath.h"
#include "support/Poses.h"

#include <climits>
#include <functional>
#include <memory>

using tarvos::core::State;
using tarvos::core::TrackingData;
using tarvos::math::Vector;
using testing::ElementsAre;

namespace {

/// A state of dimension 3 and 2 degrees of freedom with two blocks, and what is in it.
class StateTest : public testing::Test {
protected:
    StateTest() {
        state.setIncDataFromVector(vectorOf({1, 2, 3, 4, 5, 6}), -1);
        state.setPoseData(vectorOf({7, 8, 9}));
        state.setTimeStamp(1.5);
    }

    static std::vector<double> dataOf(const State& state) {
        Vector data(static_cast<unsigned int>(state.stateDimension()));
        state.getStateData(data);
        return elementsOf(data);
    }
    static std::vector<double> incDataOf(const State& state, int order = -1) {
        Vector data(static_cast<unsigned int>(order == -1 ? state.stateIncDimension() : state.poseDoF()));
        state.getStateIncData(data, order);
        return elementsOf(data);
    }

    TestPose pose{3, 2};
    State state{pose, 3};
};

TEST_F(StateTest, StartsFromAResetClone) {
    pose.setData(vectorOf({5, 5, 5}));
    const State fresh(pose, 3);
    EXPECT_EQ(fresh.getMaxOrder(), 3);
    EXPECT_EQ(fresh.stateDimension(), 7);
    EXPECT_EQ(fresh.stateIncDimension(), 6);
    EXPECT_EQ(fresh.getTimeStamp(), 0.0);
    EXPECT_THAT(dataOf(fresh), ElementsAre(1, 1, 1, 0, 0, 0, 0));
    EXPECT_THAT(incDataOf(fresh), ElementsAre(2, 2, 0, 0, 0, 0));
    EXPECT_EQ(pose.dataResets, 0);
    for (const int order : {1, 0, -7, INT_MIN}) {
        const State poseOnly(pose, order);
        EXPECT_EQ(poseOnly.getMaxOrder(), 1);
        EXPECT_EQ(poseOnly.stateDimension(), 3);
        EXPECT_EQ(poseOnly.stateIncDimension(), 2);
    }
}

TEST_F(StateTest, PacksAndUnpacksWhole) {
    EXPECT_THAT(dataOf(state), ElementsAre(7, 8, 9, 3, 4, 5, 6));
    EXPECT_THAT(incDataOf(state), ElementsAre(1, 2, 3, 4, 5, 6));
    state.setDataFromVector(vectorOf({10, 11, 12, 13, 14, 15, 16}), -1);
    EXPECT_THAT(dataOf(state), ElementsAre(10, 11, 12, 13, 14, 15, 16));
    Vector poseData(3);
    dynamic_cast<TestPose&>(*state.pose()).outdate();
    state.getPoseData(poseData);
    EXPECT_THAT(elementsOf(poseData), ElementsAre(110, 111, 112)) << "brought up to date";
}

TEST_F(StateTest, PacksAndUnpacksOneOrder) {
    state.setIncDataFromVector(vectorOf({20, 21}), 0);
    state.setIncDataFromVector(vectorOf({22, 23}), 2);
    EXPECT_THAT(incDataOf(state), ElementsAre(20, 21, 3, 4, 22, 23));
    EXPECT_THAT(incDataOf(state, 2), ElementsAre(22, 23));
    EXPECT_THAT(incDataOf(state, 0), ElementsAre(20, 21));
    state.setDataFromVector(vectorOf({30, 31, 32}), 0);
    state.setDataFromVector(vectorOf({33, 34, 35}), 1);
    EXPECT_THAT(dataOf(state), ElementsAre(30, 31, 32, 33, 34, 22, 23)) << "a block takes what it holds";
    TestPose flat(1, 2);
    State fewer(flat, 2);
    fewer.setDataFromVector(vectorOf({40}), 1);
    EXPECT_THAT(incDataOf(fewer, 1), ElementsAre(40, 0));
}

TEST_F(StateTest, Resets) {
    state.resetIncData();
    EXPECT_THAT(dataOf(state), ElementsAre(7, 8, 9, 0, 0, 0, 0));
    EXPECT_THAT(incDataOf(state), ElementsAre(2, 2, 0, 0, 0, 0));
    state.resetAll();
    EXPECT_THAT(dataOf(state), ElementsAre(1, 1, 1, 0, 0, 0, 0));
}

TEST_F(StateTest, CopiesAreDeep) {
    auto original = std::make_unique<State>(state);
    const std::unique_ptr<State> clone(original->clone());
    State assigned(pose, 3);
    const tarvos::core::cvdata::Pose* ownPose = assigned.pose();
    assigned = *original;
    const State& alias = assigned;
    assigned = alias;
    original->resetAll();
    original.reset();
    EXPECT_EQ(assigned.pose(), ownPose);
    const State moved(std::move(assigned));
    for (const State* copy :
         {static_cast<const State*>(clone.get()), static_cast<const State*>(&assigned), &moved}) {
        EXPECT_EQ(dataOf(*copy), dataOf(state));
        EXPECT_EQ(incDataOf(*copy), incDataOf(state));
        EXPECT_EQ(copy->getTimeStamp(), 1.5);
    }
    State other(pose, 2);
    static_cast<TrackingData&>(other) = state;
    EXPECT_EQ(other.getTimeStamp(), 1.5);
    EXPECT_THAT(incDataOf(other), ElementsAre(2, 2, 0, 0));
}

TEST_F(StateTest, StopsOnWhatDoesNotFit) {
    TestPose flatPose(3, 3);
    State flat(flatPose, 2);  // as many elements as the state, in fewer blocks
    Vector two(2);
    Vector three(3);
    Vector five(5);
    const std::string mismatch = " does not match the input vector!\"";
    const std::string finite = "\"ERROR: finite state dimension" + mismatch;
    const std::string whole = "\"ERROR: state dimension" + mismatch;
    const std::string incremental = "\"ERROR: incremental state dimension" + mismatch;
    const std::string order = "(order <= getMaxOrder()) && \"ERROR: too high AR order for this state!\"";
    const std::string block = "mDerivatives.size() >= order";
    const std::string types = "\"ERROR: cannot assign states of different types!\"";
    const std::string setData = "setDataFromVector(const tarvos::math::Vector&, int)";
    const std::string setInc = "setIncDataFromVector(const tarvos::math::Vector&, int)";
    const std::string getInc = "getStateIncData(tarvos::math::Vector&, int) const";
    const struct {
        std::function<void()> call;
        std::string function, condition;
    } cases[] = {
        {[&] { state.setPoseData(two); }, "setPoseData(const tarvos::math::Vector&)",
         "(pdim == poseData.dimension()) && " + finite},
        {[&] { state.getPoseData(two); }, "getPoseData(tarvos::math::Vector&) const",
         "(pdim == poseData.dimension()) && " + finite},
        {[&] { state.getStateData(two); }, "getStateData(tarvos::math::Vector&) const",
         "(stateDimension() == stateData.dimension()) && " + finite},
        {[&] { state.setDataFromVector(five, -1); }, setData, "(sdim == stateData.dimension()) && " + whole},
        {[&] { state.setDataFromVector(two, 1); }, setData, "(pdim == stateData.dimension()) && " + whole},
        {[&] { state.setDataFromVector(three, 4); }, setData, order},
        {[&] { state.setDataFromVector(three, 3); }, setData, block},
        {[&] { state.setDataFromVector(three, -2); }, setData, block},
        {[&] { state.setIncDataFromVector(five, -1); }, setInc,
         "(sdim == stateIncData.dimension()) && " + incremental},
        {[&] { state.setIncDataFromVector(three, 0); }, setInc,
         "(pdim == stateIncData.dimension()) && " + incremental},
        {[&] { state.setIncDataFromVector(two, 4); }, setInc, order},
        {[&] { state.setIncDataFromVector(two, 3); }, setInc, block},
        {[&] { state.setIncDataFromVector(two, INT_MIN); }, setInc, block},
        {[&] { state.getStateIncData(five, -1); }, getInc,
         "(sdim == stateIncData.dimension()) && " + incremental},
        {[&] { state.getStateIncData(three, 7); }, getInc,
         "(pdim == stateIncData.dimension()) && " + incremental},
        {[&] { state.getStateIncData(two, 4); }, getInc, order},
        {[&] { state.getStateIncData(two, 3); }, getInc, block},
        {[&] { state.getStateIncData(two, -2); }, getInc, block},
    };
    for (const auto& c : cases)
        EXPECT_CONTRACT(c.call(), "core/trackingdata/State.cpp", "void tarvos::core::State::" + c.function,
                        c.condition);
    const std::string assign =
        "tarvos::core::State& tarvos::core::State::operator=(const tarvos::core::State&)";
    TestPose wider(4, 2);
    EXPECT_CONTRACT(state = State(wider, 3), "core/trackingdata/State.cpp", assign,
                    "((this->poseDimension() == state.poseDimension()) && (this->stateIncDimension() == "
                    "state.stateIncDimension())) && " +
                        types);
    EXPECT_CONTRACT(state = flat, "core/trackingdata/State.cpp", assign,
                    "(mDerivatives.size() == state.mDerivatives.size()) && " + types);
}

TEST(StateAllocationTest, PackingAllocatesNoMoreThanTheVectorWould) {
    for (const int degreesOfFreedom : {2, 8, 20}) {
        TestPose pose(degreesOfFreedom, degreesOfFreedom);
        State state(pose, 3);
        const auto size = static_cast<unsigned int>(state.stateDimension());
        std::size_t before = allocations();
        Vector vector(size);
        const std::size_t ofAVector = allocations() - before;
        const std::function<void()> operations[] = {
            [&] { state.getStateData(vector); }, [&] { state.getStateIncData(vector, -1); },
            [&] { state.setDataFromVector(vector, -1); }, [&] { state.setIncDataFromVector(vector, -1); }};
        for (const auto& operation : operations) {
            before = allocations();
            operation();
            EXPECT_LE(allocations() - before, ofAVector) << degreesOfFreedom;
        }
    }
}

}  // namespace
