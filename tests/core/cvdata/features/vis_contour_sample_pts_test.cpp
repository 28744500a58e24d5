#include "core/cvdata/features/VisContourSamplePts.h"
#include "support/ContractDeath.h"

#include <type_traits>

using tarvos::core::cvdata::VisContourSamplePts;

TEST(VisContourSamplePtsTest, ClearsEdgesOnlyAndCannotBeCopied) {
    VisContourSamplePts contour;
    EXPECT_EQ(contour.type(), 0x4000001C);
    contour.mPoints.resize(3);
    contour.mEdges.resize(2);
    contour.mEdges[1].mPointRefs = {&contour.mPoints[2]};
    contour.clear();
    EXPECT_EQ(contour.mEdges.size(), 0U);
    EXPECT_EQ(contour.mPoints.size(), 3U);

    static_assert(!std::is_copy_constructible_v<VisContourSamplePts>);
    VisContourSamplePts other;
    const std::string type = "tarvos::core::cvdata::VisContourSamplePts";
    EXPECT_CONTRACT(contour = other, "core/cvdata/features/VisContourSamplePts.cpp",
                    "virtual " + type + "& " + type + "::operator=(const " + type + "&)",
                    "0 && \"operator = not implemented\"");
}
