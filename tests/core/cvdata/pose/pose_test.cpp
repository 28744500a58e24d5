#include "core/cvdata/pose/Pose.h"

#include "core/cvdata/pose/VectorPose.h"
#include "support/Output.h"
#include "support/Poses.h"

#include <memory>

using tarvos::core::cvdata::Pose;
using tarvos::core::cvdata::VectorPose;
using tarvos::math::Vector;
using testing::ElementsAre;

namespace {

TEST(PoseTest, ReadingUpdatesWhatIsOutOfDate) {
    TestPose pose(3, 2);
    Vector data(3);
    Vector incData(2);
    pose.getData(data);
    pose.outdate(true, true);
    pose.getData(data);
    pose.getData(data);
    EXPECT_EQ(pose.dataUpdates, 1);
    EXPECT_THAT(elementsOf(data), ElementsAre(100, 100, 100));
    pose.getIncData(incData);
    pose.getIncData(incData);
    EXPECT_EQ(pose.incUpdates, 2) << "its update leaves the flag at 0";
}

TEST(PoseTest, CopiesKeepWhatIsOutOfDate) {
    TestPose pose(3, 2);
    for (const bool data : {false, true}) {
        pose.outdate(data, !data);
        TestPose assigned(3, 2);
        static_cast<Pose&>(assigned) = pose;
        const std::unique_ptr<Pose> clone(pose.clone());
        for (const Pose* copy : {static_cast<const Pose*>(&assigned), static_cast<const Pose*>(clone.get())}) {
            EXPECT_EQ(copy->getUpdateFlag(), pose.getUpdateFlag());
            EXPECT_EQ(copy->getUpdateIncFlag(), pose.getUpdateIncFlag());
        }
    }
}

TEST(PoseTest, StopsOnWrongSizes) {
    TestPose pose(3, 2);
    Vector three(3);
    Vector two(2);
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

}  // namespace
