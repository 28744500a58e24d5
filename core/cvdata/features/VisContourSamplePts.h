#pragma once

#include <tarvos/core/cvdata/VisualFeatures.h>
#include <tarvos/math/Vector2.h>
#include <tarvos/math/Vector4.h>

#include <cstdint>
#include <vector>

namespace tarvos::core::cvdata {

/// Sample points along contours, and edges that refer to them.
///
/// Edges point to points that they do not own, usually those in mPoints; growing mPoints moves them, so fill it first
/// (or reserve). A copy would point into the points of the original, so copy construction does not compile, and
/// assignment aborts. Move construction takes over the points, and the edges still point to them, so that a vector of
/// features can grow.
///
/// @snippet features.cpp contour
/// @ingroup features
class TARVOS_CORE_EXPORT VisContourSamplePts : public VisualFeatures {
public:
    /// A sample point. The library gives the fields no meaning; a new record is all zero. What a contour tracker
    /// usually keeps in them is noted, but not enforced.
    struct CPOINT {
        math::Vector4 mVec4;                ///< for instance position and unit normal: x, y, nx, ny
        math::Vector2 mVec2;                ///< for instance the position in the last frame
        std::vector<math::Vector2> mList1;  ///< for instance candidate matches along the normal
        std::vector<math::Vector2> mList2;  ///< for instance their gradients
        std::int32_t mField = 0;            ///< for instance the contour the point belongs to
    };

    /// An edge: a stretch of contour.
    struct Edge {
        std::vector<CPOINT*> mPointRefs;  ///< its points in order, owned elsewhere
        math::Vector2 mVec2;              ///< for instance its direction
        math::Vector4 mFirstVec4;         ///< for instance its first end: position and normal
        math::Vector4 mSecondVec4;        ///< for instance its second end
        std::int32_t mField = 0;          ///< for instance the contour the edge belongs to
    };

    /// No edges, no points.
    VisContourSamplePts() : VisualFeatures(REPR_VIS_CONTOUR_SAMPLE_PTS) {}
    VisContourSamplePts(const VisContourSamplePts& other) = delete;
    /// Takes over the points, edges and flag of @p other, which then has neither edges nor points.
    VisContourSamplePts(VisContourSamplePts&& other) noexcept = default;

    /// Not supported: aborts.
    virtual VisContourSamplePts& operator=(const VisContourSamplePts& other);

    /// Removes the edges. The points stay.
    void clear() { mEdges.clear(); }

    std::vector<Edge> mEdges;     ///< stretches of contour
    std::vector<CPOINT> mPoints;  ///< the points that edges refer to
    std::int32_t mField = 0;      ///< free for the application

protected:
    using VisualFeatures::operator=;
};

}  // namespace tarvos::core::cvdata
