#include "core/cvdata/pose/Pose.h"

#include "support/ContractDeath.h"
#include "support/Poses.h"

using tarvos::core::cvdata::Pose;
using tarvos::math::Vector;
using testing::ElementsAre;

namespace {

TEST(PoseTest, ReadingUpdatesWhatIsOutOfDate) {
    TestPose pose(3, 2);
    Vector data(3);
    Vector incData(2);
    pose.getData(data);
    pose.outdate();
    pose.getData(data);
    pose.getData(data);
    EXPECT_EQ(pose.dataUpdates, 1);
    EXPECT_THAT(elementsOf(data), ElementsAre(100, 100, 100));
    pose.getIncData(incData);
    pose.getIncData(incData);
    EXPECT_EQ(pose.incUpdates, 2) << "its update leaves the flag at 0";

    const std::string function = "void tarvos::core::cvdata::Pose::";
    EXPECT_CONTRACT(pose.getData(incData), "core/cvdata/pose/Pose.h", function + "getData(tarvos::math::Vector&)",
                    "(int)vec.dimension() == dimension() && \"ERROR: getData - vector sizes does not match!\"");
    EXPECT_CONTRACT(pose.getIncData(data), "core/cvdata/pose/Pose.h", function + "getIncData(tarvos::math::Vector&)",
                    "((int)vec.dimension() == dof()) && \"ERROR: getIncData - vector sizes does not match!\"");
    EXPECT_DEATH(TestPose(2, -1), "count of elements is negative");
    EXPECT_DEATH(static_cast<Pose&>(pose) = TestPose(2, 2), "poses differ in kind");
}

}  // namespace
