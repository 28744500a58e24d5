/// @file
/// Feature containers; shows pieces of the reference.

#include <tarvos/core/cvdata/features/Blobs.h>
#include <tarvos/core/cvdata/features/ColorGMM.h>
#include <tarvos/core/cvdata/features/ColourHist2d.h>
#include <tarvos/core/cvdata/features/VisContourSamplePts.h>

#include <iostream>

using namespace tarvos::core::cvdata;
using tarvos::math::Vector4;

int main() {
    //! [mixture]
    const ColorGMM skin = ColorGMM::skin();
    for (const auto& component : skin.mMixtures)
        std::cout << component->mWeight << " at " << component->mMean << std::endl;
    //! [mixture]

    const int x = 30, y = 20, width = 10, height = 8;
    //! [blobs]
    Blobs blobs;
    blobs.addBlob();
    Blobs::BlobInfo& blob = blobs.mBlobs.back();
    blob.mBlock = {x, y, width, height};
    blob.mVector[0] = x + 0.5 * width;
    //! [blobs]

    const unsigned int hue = 100, saturation = 114, value = 200;
    //! [histogram]
    ColourHist2d histogram(30, 32, 16);  // bins of hue, saturation and value
    const unsigned int bin = (hue * 30 / 180 * 32 + saturation * 32 / 256) * 16 + value * 16 / 256;
    histogram.data()[bin] += 1.0;
    //! [histogram]

    const double normalX = 1.0, normalY = 0.0;
    //! [contour]
    VisContourSamplePts contour;
    contour.mPoints.resize(2);  // first all points ...
    contour.mPoints[0].mVec4 = Vector4(x, y, normalX, normalY);
    contour.mEdges.resize(1);  // ... then the edges that point to them
    contour.mEdges[0].mPointRefs = {&contour.mPoints[0], &contour.mPoints[1]};
    //! [contour]
    return blobs.dimension() == 1 && histogram.data()[bin] == 1.0 ? 0 : 1;
}
