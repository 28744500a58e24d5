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
    TestPose pose{3, 2};
    State state{pose, 3};
};

TEST_F(StateTest, StartsFromAResetClone) {
    pose.setData(Vector::of(5, 5, 5));
    const State fresh(pose, 3);
    EXPECT_THAT(dataOf(fresh), ElementsAre(1, 1, 1, 0, 0, 0, 0));
    EXPECT_EQ(State(pose, INT_MIN).getMaxOrder(), 1);
}

TEST_F(StateTest, ReadersBringThePoseUpToDate) {
    Vector poseData(3);
    dynamic_cast<TestPose&>(*state.pose()).outdate(true, false);
    state.getPoseData(poseData);
    EXPECT_THAT(elementsOf(poseData), ElementsAre(107, 108, 109));
    EXPECT_THAT(dataOf(state), ElementsAre(107, 108, 109, 3, 4, 5, 6));
}

TEST_F(StateTest, CopiesAreDeepAndThroughTheBaseOnlyTheTimeStampIsCopied) {
    auto original = std::make_unique<State>(state);
    const std::unique_ptr<State> clone(original->clone());
    original->resetAll();
    original.reset();
    EXPECT_EQ(dataOf(*clone), dataOf(state));
    State other(pose, 2);
    static_cast<TrackingData&>(other) = state;
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
        {[&] { state.setDataFromVector(three, 3); }, setData, block},
        {[&] { state.setIncDataFromVector(five, -1); }, setInc, size("sdim == stateIncData", incremental)},
        {[&] { state.setIncDataFromVector(three, 0); }, setInc, size("pdim == stateIncData", incremental)},
        {[&] { state.setDataFromVector(three, 4); }, setData, order},
        {[&] { state.setIncDataFromVector(two, INT_MIN); }, setInc, block},
        {[&] { state.getStateIncData(three, 7); }, getInc, size("pdim == stateIncData", incremental)},
        {[&] { state.getStateIncData(five, -1); }, getInc, size("sdim == stateIncData", incremental)},
        {[&] { state.getStateIncData(two, 4); }, getInc, order},
        {[&] { state.setIncDataFromVector(two, 4); }, setInc, order},
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
