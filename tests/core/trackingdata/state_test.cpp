#include "core/trackingdata/State.h"

#include "support/Output.h"
#include "support/Poses.h"

#include <climits>
#include <functional>
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

TEST_F(StateTest, ThroughTheBaseOnlyTheTimeStampIsCopied) {
    State other(pose, 2);
    static_cast<TrackingData&>(other) = state;
    EXPECT_EQ(other.getTimeStamp(), 1.5);
}

TEST_F(StateTest, StopsOnWhatDoesNotFit) {
    Vector two(2);
    Vector three(3);
    Vector five(5);
    const std::string order = "(order <= getMaxOrder()) && \"ERROR: too high AR order for this state!\"";
    const std::string block = "mDerivatives.size() >= order";
    /// The condition that stops a vector whose size is no @p expected.
    const auto size = [](const std::string& expected, const std::string& vector, const std::string& what) {
        return "(" + expected + " == " + vector + ".dimension()) && \"ERROR: " + what +
               " does not match the input vector!\"";
    };
    const std::string finite = "finite state dimension", incremental = "incremental state dimension";
    const std::tuple<std::function<void()>, std::string, std::string> cases[] = {
        {[&] { state.setPoseData(two); }, "setPoseData", size("pdim", "poseData", finite)},
        {[&] { state.getPoseData(two); }, "getPoseData", size("pdim", "poseData", finite)},
        {[&] { state.getStateData(two); }, "getStateData", size("stateDimension()", "stateData", finite)},
        {[&] { state.setDataFromVector(five, -1); }, "setDataFromVector", size("sdim", "stateData", "state dimension")},
        {[&] { state.setDataFromVector(three, 3); }, "setDataFromVector", block},
        {[&] { state.setDataFromVector(three, 4); }, "setDataFromVector", order},
        {[&] { state.setIncDataFromVector(five, -1); }, "setIncDataFromVector",
         size("sdim", "stateIncData", incremental)},
        {[&] { state.setIncDataFromVector(three, 0); }, "setIncDataFromVector",
         size("pdim", "stateIncData", incremental)},
        {[&] { state.setIncDataFromVector(two, INT_MIN); }, "setIncDataFromVector", block},
        {[&] { state.setIncDataFromVector(two, 4); }, "setIncDataFromVector", order},
        {[&] { state.getStateIncData(five, -1); }, "getStateIncData", size("sdim", "stateIncData", incremental)},
        {[&] { state.getStateIncData(three, 7); }, "getStateIncData", size("pdim", "stateIncData", incremental)},
        {[&] { state.getStateIncData(two, -2); }, "getStateIncData", block},
        {[&] { state.getStateIncData(two, 4); }, "getStateIncData", order}};
    for (const auto& [call, function, condition] : cases)
        EXPECT_CONTRACT(call(), "State::" + function, condition);
    EXPECT_CONTRACT(state = State(TestPose(4, 2), 3), "State::operator=",
                    "((this->poseDimension() == state.poseDimension()) && (this->stateIncDimension() == "
                    "state.stateIncDimension())) && \"ERROR: cannot assign states of different types!\"");
    EXPECT_DEATH(state = State(TestPose(3, 3), 2), "cannot assign states of different types!")
        << "as many elements in fewer blocks";
}

}  // namespace
