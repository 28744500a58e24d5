#include "core/trackingdata/State.h"

#include "core/cvdata/pose/VectorPose.h"
#include "support/Output.h"
#include "support/Poses.h"

#include <climits>
#include <functional>
#include <memory>
#include <tuple>

using tarvos::core::State;
using tarvos::core::TrackingData;
using tarvos::core::cvdata::Pose;
using tarvos::core::cvdata::VectorPose;
using tarvos::math::Vector;
using testing::ElementsAre;

namespace {

struct PoseTest : testing::Test {
    TestPose pose{3, 2};
    Vector three{3}, two{2};
};

TEST_F(PoseTest, ReadingUpdatesWhatIsOutOfDate) {
    pose.getData(three);
    pose.outdate(true, true);
    pose.getData(three);
    pose.getData(three);
    EXPECT_EQ(pose.dataUpdates, 1);
    EXPECT_THAT(elementsOf(three), ElementsAre(100, 100, 100));
    pose.getIncData(two);
    pose.getIncData(two);
    EXPECT_EQ(pose.incUpdates, 2) << "its update leaves the flag at 0";
}

TEST_F(PoseTest, CopiesKeepWhatIsOutOfDate) {
    const auto flagsOf = [](const Pose& one) { return std::pair(one.getUpdateFlag(), one.getUpdateIncFlag()); };
    for (const bool data : {false, true}) {
        pose.outdate(data, !data);
        TestPose assigned(3, 2);
        static_cast<Pose&>(assigned) = pose;
        const std::unique_ptr<Pose> clone(pose.clone());
        EXPECT_EQ(flagsOf(assigned), flagsOf(pose));
        EXPECT_EQ(flagsOf(*clone), flagsOf(pose));
    }
}

TEST_F(PoseTest, StopsOnWrongSizes) {
    EXPECT_CONTRACT(pose.getData(two), "Pose::getData",
                    "(int)vec.dimension() == dimension() && \"ERROR: getData - vector sizes does not match!\"");
    EXPECT_CONTRACT(pose.getIncData(three), "Pose::getIncData",
                    "((int)vec.dimension() == dof()) && \"ERROR: getIncData - vector sizes does not match!\"");
    EXPECT_DEATH(TestPose(2, -1), "count of elements is negative");
    EXPECT_DEATH(static_cast<Pose&>(pose) = TestPose(2, 2), "poses differ in kind");
}

TEST(VectorPoseTest, IsItsVectorInBothForms) {
    VectorPose pose(2);
    pose.setIncData(Vector::of(3, 4));
    const std::unique_ptr<VectorPose> clone(pose.clone());
    pose.setData(Vector::of(5, 6));
    Vector read(2);
    pose.getIncData(read);
    EXPECT_THAT(elementsOf(read), ElementsAre(5, 6));
    clone->getData(read);
    EXPECT_THAT(elementsOf(read), ElementsAre(3, 4));
    clone->resetIncData();
    clone->getData(read);
    EXPECT_THAT(elementsOf(read), ElementsAre(0, 0));
}

/// A state of dimension 3 and 2 degrees of freedom with two blocks.
struct StateTest : PoseTest {
    State state{pose, 3};
};

TEST_F(StateTest, ReadersBringThePoseUpToDate) {
    Vector packed(7);
    state.setDataFromVector(Vector::of(7, 8, 9, 3, 4, 5, 6), -1);
    dynamic_cast<TestPose&>(*state.pose()).outdate(true, false);
    state.getPoseData(three);
    EXPECT_THAT(elementsOf(three), ElementsAre(107, 108, 109));
    state.getStateData(packed);
    EXPECT_THAT(elementsOf(packed), ElementsAre(107, 108, 109, 3, 4, 5, 6));
}

TEST_F(StateTest, ThroughTheBaseOnlyTheTimeStampIsCopied) {
    State other(pose, INT_MIN);
    EXPECT_EQ(other.getMaxOrder(), 1);
    state.setTimeStamp(1.5);
    static_cast<TrackingData&>(other) = state;
    EXPECT_EQ(other.getTimeStamp(), 1.5);
}

TEST_F(StateTest, StopsOnWhatDoesNotFit) {
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
        {[&] { state.setDataFromVector(two, 0); }, "setDataFromVector", size("pdim", "stateData", "state dimension")},
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
