#include "core/trackingdata/State.h"

#include "support/ContractDeath.h"
#include "support/Poses.h"

#include <climits>
#include <functional>
#include <memory>
#include <tuple>

using tarvos::core::State;
using tarvos::core::TrackingData;
using tarvos::math::Vector;
using testing::ElementsAre;

namespace {

/// A state of dimension 3 and 2 degrees of freedom with two blocks, and what is in it.
class StateTest : public testing::Test {
protected:
    StateTest() {
        state.setIncDataFromVector(Vector::of(1, 2, 3, 4, 5, 6), -1);
        state.setPoseData(Vector::of(7, 8, 9));
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
    pose.setData(Vector::of(5, 5, 5));
    const State fresh(pose, 3);
    EXPECT_EQ(fresh.getMaxOrder(), 3);
    EXPECT_THAT(dataOf(fresh), ElementsAre(1, 1, 1, 0, 0, 0, 0));
    EXPECT_THAT(incDataOf(fresh), ElementsAre(2, 2, 0, 0, 0, 0));
    for (const int order : {1, 0, -7, INT_MIN}) {
        EXPECT_EQ(State(pose, order).stateDimension(), 3);
        EXPECT_EQ(State(pose, order).stateIncDimension(), 2);
    }
}

TEST_F(StateTest, PacksUnpacksAndResets) {
    EXPECT_THAT(dataOf(state), ElementsAre(7, 8, 9, 3, 4, 5, 6));
    EXPECT_THAT(incDataOf(state), ElementsAre(1, 2, 3, 4, 5, 6));
    state.setIncDataFromVector(Vector::of(20, 21), 0);
    state.setIncDataFromVector(Vector::of(22, 23), 2);
    EXPECT_THAT(incDataOf(state, 2), ElementsAre(22, 23));
    EXPECT_THAT(incDataOf(state, 0), ElementsAre(20, 21));
    state.setDataFromVector(Vector::of(30, 31, 32), 0);
    state.setDataFromVector(Vector::of(33, 34, 35), 1);
    EXPECT_THAT(dataOf(state), ElementsAre(30, 31, 32, 33, 34, 22, 23)) << "a block takes what it holds";
    state.setDataFromVector(Vector::of(10, 11, 12, 13, 14, 15, 16), -1);
    Vector poseData(3);
    dynamic_cast<TestPose&>(*state.pose()).outdate(true, false);
    state.getPoseData(poseData);
    EXPECT_THAT(elementsOf(poseData), ElementsAre(110, 111, 112)) << "brought up to date";
    EXPECT_THAT(dataOf(state), ElementsAre(110, 111, 112, 13, 14, 15, 16));
    state.resetIncData();
    EXPECT_THAT(dataOf(state), ElementsAre(110, 111, 112, 0, 0, 0, 0));
    state.resetAll();
    EXPECT_THAT(dataOf(state), ElementsAre(1, 1, 1, 0, 0, 0, 0));

    TestPose flat(1, 2);
    State wide(flat, 2);
    wide.setDataFromVector(Vector::of(40), 1);
    EXPECT_THAT(incDataOf(wide, 1), ElementsAre(40, 0));
}

TEST_F(StateTest, CopiesAreDeep) {
    auto original = std::make_unique<State>(state);
    const std::unique_ptr<State> clone(original->clone());
    State assigned(pose, 3);
    assigned = *original;
    assigned = static_cast<const State&>(assigned);
    original->resetAll();
    original.reset();
    for (const State* copy : {static_cast<const State*>(clone.get()), static_cast<const State*>(&assigned)}) {
        EXPECT_EQ(dataOf(*copy), dataOf(state));
        EXPECT_EQ(incDataOf(*copy), incDataOf(state));
        EXPECT_EQ(copy->getTimeStamp(), 1.5);
    }
    State other(pose, 2);
    static_cast<TrackingData&>(other) = state;  // the time stamp alone
    EXPECT_EQ(other.getTimeStamp(), 1.5);
}

TEST_F(StateTest, StopsOnWhatDoesNotFit) {
    Vector two(2);
    Vector three(3);
    Vector five(5);
    const auto size = [](const std::string& compared, const std::string& what) {
        return "(" + compared + ".dimension()) && \"ERROR: " + what + " does not match the input vector!\"";
    };
    const std::string finite = "finite state dimension", incremental = "incremental state dimension";
    const std::string order = "(order <= getMaxOrder()) && \"ERROR: too high AR order for this state!\"";
    const std::string block = "mDerivatives.size() >= order";
    const std::string setData = "setDataFromVector(const tarvos::math::Vector&, int)";
    const std::string setInc = "setIncDataFromVector(const tarvos::math::Vector&, int)";
    const std::string getInc = "getStateIncData(tarvos::math::Vector&, int) const";
    const std::tuple<std::function<void()>, std::string, std::string> cases[] = {
        {[&] { state.setPoseData(two); }, "setPoseData(const tarvos::math::Vector&)", size("pdim == poseData", finite)},
        {[&] { state.getPoseData(two); }, "getPoseData(tarvos::math::Vector&) const", size("pdim == poseData", finite)},
        {[&] { state.getStateData(two); }, "getStateData(tarvos::math::Vector&) const",
         size("stateDimension() == stateData", finite)},
        {[&] { state.setDataFromVector(five, -1); }, setData, size("sdim == stateData", "state dimension")},
        {[&] { state.setDataFromVector(two, 1); }, setData, size("pdim == stateData", "state dimension")},
        {[&] { state.setDataFromVector(three, 3); }, setData, block},
        {[&] { state.setIncDataFromVector(five, -1); }, setInc, size("sdim == stateIncData", incremental)},
        {[&] { state.setIncDataFromVector(three, 0); }, setInc, size("pdim == stateIncData", incremental)},
        {[&] { state.setDataFromVector(three, 4); }, setData, order},
        {[&] { state.setIncDataFromVector(two, INT_MIN); }, setInc, block},
        {[&] { state.getStateIncData(three, 7); }, getInc, size("pdim == stateIncData", incremental)},
        {[&] { state.getStateIncData(five, -1); }, getInc, size("sdim == stateIncData", incremental)},
        {[&] { state.getStateIncData(two, 4); }, getInc, order},
        {[&] { state.setIncDataFromVector(two, 4); }, setInc, order},
        {[&] { state.getStateIncData(two, 3); }, getInc, block},
        {[&] { state.getStateIncData(two, -2); }, getInc, block}};
    for (const auto& [call, function, condition] : cases)
        EXPECT_CONTRACT(call(), "core/trackingdata/State\\.(cpp|h)", "void tarvos::core::State::" + function,
                        condition);
    TestPose wider(4, 2);
    EXPECT_CONTRACT(state = State(wider, 3), "core/trackingdata/State.cpp",
                    "tarvos::core::State& tarvos::core::State::operator=(const tarvos::core::State&)",
                    "((this->poseDimension() == state.poseDimension()) && (this->stateIncDimension() == "
                    "state.stateIncDimension())) && \"ERROR: cannot assign states of different types!\"");
    TestPose flat(3, 3);  // as many elements as the state, in fewer blocks
    EXPECT_DEATH(state = State(flat, 2), "cannot assign states of different types!");
}

}  // namespace
