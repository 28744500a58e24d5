#include "core/cvdata/features/VisContourSamplePts.h"
#include "support/ContractDeath.h"

#include <type_traits>

using tarvos::core::cvdata::VisContourSamplePts;

namespace {

VisContourSamplePts contourOfThreePoints() {
    VisContourSamplePts contour;
    contour.mPoints.resize(3);
    contour.mEdges.resize(2);
    contour.mEdges[1].mPointRefs = {&contour.mPoints[2]};
    contour.mField = 5;
    contour.mFlag = true;
    return contour;
}

TEST(VisContourSamplePtsTest, ClearsTheEdgesOnly) {
    EXPECT_EQ(VisContourSamplePts().mField, 0);
    VisContourSamplePts contour = contourOfThreePoints();
    contour.clear();
    EXPECT_EQ(contour.mEdges.size(), 0U);
    EXPECT_EQ(contour.mPoints.size(), 3U);
}

TEST(VisContourSamplePtsTest, CannotBeCopied) {
    static_assert(!std::is_copy_constructible_v<VisContourSamplePts>);
    VisContourSamplePts contour;
    const VisContourSamplePts other;
    const std::string type = "tarvos::core::cvdata::VisContourSamplePts";
    EXPECT_CONTRACT(contour = other, "core/cvdata/features/VisContourSamplePts.cpp",
                    "virtual " + type + "& " + type + "::operator=(const " + type + "&)",
                    "0 && \"operator = not implemented\"");
    EXPECT_DEATH(contour = VisContourSamplePts(), "operator = not implemented");
}

TEST(VisContourSamplePtsTest, EdgesGoOnPointingToThePointsThatMoveAlong) {
    static_assert(std::is_nothrow_move_constructible_v<VisContourSamplePts>);
    std::vector<VisContourSamplePts> contours;
    for (int i = 0; i < 10; ++i)
        contours.push_back(contourOfThreePoints());
    for (const VisContourSamplePts& contour : contours) {
        EXPECT_EQ(contour.mEdges[1].mPointRefs[0], &contour.mPoints[2]);
        EXPECT_EQ(contour.mField, 5);
        EXPECT_TRUE(contour.mFlag);
    }
}

}  // namespace
