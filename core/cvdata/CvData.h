#pragma once

#include <tarvos/core/Export.h>

/// Images and visual features: the data that trackers work on.
namespace tarvos::core::cvdata {

/// The root of all vision data. A tag, fixed at construction, says what concrete kind of data an object is, so that
/// code holding a `CvData&` can tell.
/// @ingroup images
class TARVOS_CORE_EXPORT CvData {
public:
    /// Concrete type, and the class that sets it.
    enum DataReprType {
        REPR_COLOUR_HIST_2D = 0x40000016,          ///< ColourHist2d
        REPR_IMAGE = 0x40000017,                   ///< Image and TiledImage
        REPR_VIS_CONTOUR_SAMPLE_PTS = 0x4000001C,  ///< VisContourSamplePts
        REPR_BLOBS = 0x4000001D,                   ///< Blobs
        REPR_COLOR_GMM = 0x4000001F                ///< ColorGMM
    };

    /// Data with the tag @p type. The tag never changes.
    CvData(DataReprType type) noexcept : mDataReprType(type) {}
    /// Data with the tag of @p data.
    CvData(const CvData& data) noexcept = default;
    virtual ~CvData() = default;

    /// Only checks that the tags match, and aborts otherwise. To copy data, assign objects of the same concrete class.
    virtual CvData& operator=(const CvData& data);

    /// The tag.
    DataReprType type() const noexcept { return mDataReprType; }

private:
    const DataReprType mDataReprType;
};

}  // namespace tarvos::core::cvdata
