#include "support/Output.h"
#include "support/Poses.h"

#include <tarvos/core/cvdata/pose/VectorPose.h>
#include <tarvos/core/trackingdata/State.h>

#include <climits>
#include <memory>

using tarvos::core::State;
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
    pose.outdate();
    pose.getData(three);
    pose.getData(three);
    EXPECT_EQ(pose.dataUpdates, 1);
    EXPECT_THAT(elementsOf(three), ElementsAre(100, 100, 100));
    TestPose copy(3, 2);
    static_cast<Pose&>(copy) = pose;
    for (int i = 0; i < 2; ++i)
        copy.getIncData(two);
    EXPECT_EQ(copy.incUpdates, 2) << "its update leaves the flag at 0";
}

TEST_F(PoseTest, CopiesAndAssignmentsKeepBothFlags) {
    TestPose assigned(3, 2);
    for (const int flag : {0, 1}) {
        flag == 0 ? pose.outdate() : pose.setCurrent();
        const std::unique_ptr<TestPose> copy(pose.clone());
        static_cast<Pose&>(assigned) = pose;
        for (const TestPose* other : {copy.get(), &assigned}) {
            const char* const name = other == &assigned ? "assigned" : "copied";
            EXPECT_EQ(other->getUpdateFlag(), flag) << name;
            EXPECT_EQ(other->getUpdateIncFlag(), flag) << name;
        }
    }
}

TEST(VectorPoseTest, DataAndIncrementalDataStayOneVectorInACopy) {
    VectorPose pose(2);
    const std::unique_ptr<VectorPose> copy(pose.clone());
    Vector read(2);
    for (VectorPose* each : {&pose, copy.get()}) {
        each->setIncData(Vector::of(3, 4));
        each->getData(read);
        EXPECT_THAT(elementsOf(read), ElementsAre(3, 4));
        EXPECT_EQ(&each->currentIncData(), &each->currentData());
        each->resetIncData();
        EXPECT_THAT(elementsOf(each->currentData()), ElementsAre(0, 0));
    }
}

TEST_F(PoseTest, AbortsOnWrongSizes) {
    EXPECT_DEATH(pose.getData(two), "getData - vector sizes does not match!");
    EXPECT_DEATH(pose.getIncData(three), "getIncData - vector sizes does not match!");
    struct LostPose : TestPose {
        LostPose() : TestPose(3, 2) { mData = nullptr; }
    } lost;
    EXPECT_DEATH(lost.getData(three), "the data has lost its size");
    EXPECT_DEATH(VectorPose(-1), "count of elements is negative");
    EXPECT_DEATH(static_cast<Pose&>(pose) = TestPose(2, 2), "poses differ in kind");
}

/// A state of dimension 3 and 2 degrees of freedom with two blocks.
struct StateTest : PoseTest {
    State state{pose, 3};
};

TEST_F(StateTest, ReadersBringThePoseUpToDate) {
    Vector packed(7);
    state.setDataFromVector(Vector::of(7, 8, 9, 3, 4, 5, 6), -1);
    auto& own = dynamic_cast<TestPose&>(*state.pose());
    own.outdate();
    state.getPoseData(three);
    EXPECT_THAT(elementsOf(three), ElementsAre(107, 108, 109));
    own.outdate();
    state.getStateData(packed);
    EXPECT_THAT(elementsOf(packed), ElementsAre(207, 208, 209, 3, 4, 5, 6));
    Vector incremental(6);
    state.getStateIncData(incremental, -1);
    EXPECT_EQ(own.incUpdates, 1);
    EXPECT_THAT(elementsOf(state.derivative(2)), ElementsAre(5, 6));
}

/// A pose that finds out at an update how many elements it has.
struct GrowingPose : TestPose {
    using TestPose::TestPose;
    GrowingPose* clone() const override { return new GrowingPose(*this); }
    void updateData() override { *mData = Vector(static_cast<unsigned int>(mDimension += 9)); }
    void updateIncData() override { *mIncData = Vector(static_cast<unsigned int>(mDof += 9)); }
};

TEST_F(StateTest, AbortsWhenThePoseChangesItsSizeWhileItIsRead) {
    State growing(GrowingPose(3, 2), 3);
    dynamic_cast<TestPose&>(*growing.pose()).outdate();
    Vector whole(7), incremental(6);
    const char* const message = "the pose has changed its size while it was read";
    EXPECT_DEATH(growing.getPoseData(three), message);
    EXPECT_DEATH(growing.getStateData(whole), message);
    EXPECT_DEATH(growing.getStateIncData(incremental, -1), message);
    EXPECT_DEATH(growing.getStateIncData(two, 0), message);
    EXPECT_EQ(growing.getPoseData().dimension(), 12U) << "what it has now";
}

TEST_F(StateTest, AbortsOnAVectorOfAnotherSize) {
    EXPECT_DEATH(state.setPoseData(two), "finite state dimension does not match");
    EXPECT_DEATH(state.getPoseData(two), "finite state dimension does not match");
    EXPECT_DEATH(state.getStateData(two), "finite state dimension does not match");
    for (const int order : {-1, 0, 2}) {
        ASSERT_DEATH(state.setDataFromVector(two, order), "state dimension does not match") << order;
        ASSERT_DEATH(state.setIncDataFromVector(three, order), "incremental state dimension does not match") << order;
        ASSERT_DEATH(state.getStateIncData(three, order), "incremental state dimension does not match") << order;
    }
}

TEST_F(StateTest, AbortsOnAnOrderWithoutABlock) {
    for (const int order : {4, 3, -2, INT_MIN}) {
        ASSERT_DEATH(state.derivative(order), "there is no such derivative");
        const std::string condition = order == 4 ? "too high AR order" : "mDerivatives.size\\(\\) >= order";
        ASSERT_DEATH(state.setDataFromVector(three, order), condition);
        ASSERT_DEATH(state.setIncDataFromVector(two, order), condition);
        ASSERT_DEATH(state.getStateIncData(two, order), condition);
    }
}

TEST_F(StateTest, AbortsOnAnotherStatesDimensionsAndOnAPoseWithoutAClone) {
    EXPECT_DEATH(state = State(TestPose(4, 2), 3), "cannot assign states of different types!");
    struct Uncloned : TestPose {
        using TestPose::TestPose;
        TestPose* clone() const override { return nullptr; }
    };
    EXPECT_DEATH(State(Uncloned(1, 1), 1), "the pose's clone\\(\\) returned null");
    EXPECT_DEATH(state = State(pose, 2), "cannot assign states of different types!");
}

}  // namespace
