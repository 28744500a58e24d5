#pragma once

#include <tarvos/core/Export.h>
#include <tarvos/math/Vector.h>

namespace tarvos::core::cvdata {

// Every derived class's implicit assignment hides the virtual one; its users should not be warned.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Woverloaded-virtual"

/// One configuration of a target, for instance its position and size: the base of an application's pose classes, which
/// a State carries. VectorPose is the one for plain vectors; the guide "Your own pose" makes another.
///
/// A pose is seen in two forms: its data, a vector of dimension() elements, and its incremental data, a vector of
/// dof() elements, one per degree of freedom. The two counts may differ (a rotation as a quaternion has 4 elements and
/// 3 degrees of freedom). Each vector has an update flag: at 0 it is out of date, and reading it calls updateData()
/// or updateIncData() first.
///
/// Class invariant: mData has dimension() elements and mIncData has dof(). A derived class maintains it; where it is
/// broken, reading aborts.
/// @ingroup tracking
class TARVOS_CORE_EXPORT Pose {
public:
    virtual ~Pose() = default;
    /// A new pose of the same class and value, owned by the caller.
    virtual Pose* clone() const = 0;
    /// Takes @p data, of dimension() elements, as the pose's data.
    virtual void setData(const math::Vector& data) = 0;
    /// Takes @p incData, of dof() elements, as the pose's incremental data.
    virtual void setIncData(const math::Vector& incData) = 0;
    /// Returns the data to its initial value.
    virtual void resetData() = 0;
    /// Returns the incremental data to its initial value.
    virtual void resetIncData() = 0;
    /// Brings mData up to date. Set mUpdateFlag to mark it current.
    virtual void updateData() = 0;
    /// Brings mIncData up to date. Set mUpdateIncFlag to mark it current.
    virtual void updateIncData() = 0;
    /// Makes this pose equal in value to @p pose, which has the same class: copies both vectors and flags. A pose
    /// with members of its own overrides this. Aborts when the counts differ.
    virtual Pose& operator=(const Pose& pose);

    /// Elements of the data.
    int dimension() const { return mDimension; }
    /// Elements of the incremental data: the degrees of freedom.
    int dof() const { return mDof; }
    /// 0 while the data is out of date.
    int getUpdateFlag() const { return mUpdateFlag; }
    /// 0 while the incremental data is out of date.
    int getUpdateIncFlag() const { return mUpdateIncFlag; }

    /// Copies the data, brought up to date, into @p vec. Aborts unless it has dimension() elements.
    void getData(math::Vector& vec);
    /// Copies the incremental data, brought up to date, into @p vec. Aborts unless it has dof() elements.
    void getIncData(math::Vector& vec);
    /// The data, brought up to date. Valid until the pose is changed or destroyed.
    const math::Vector& currentData();
    /// The incremental data, brought up to date. Valid until the pose is changed or destroyed.
    const math::Vector& currentIncData();

protected:
    /// No elements yet: for a pose class whose constructor sets the members below. A class that points mData and
    /// mIncData to vectors of its own deletes them itself, and needs a copy constructor of its own then.
    Pose() : Pose(0, 0) {}
    /// Makes both vectors, all zero and up to date. Aborts when a count is negative.
    Pose(int dimension, int dof);
    /// Makes one vector of @p size zeros that is both the data and the incremental data.
    explicit Pose(int size);
    /// Deep copy; a shared vector stays shared.
    Pose(const Pose& pose);

    int mDimension;       ///< elements of mData
    int mDof;             ///< elements of mIncData
    int mUpdateFlag = 1;  ///< 0 while mData is out of date

private:
    // Inside the pose, so that a copy of it is one allocation.
    math::Vector mDataVector;
    math::Vector mIncDataVector;

protected:
    math::Vector* mData = &mDataVector;        ///< the data; by default owned by the pose
    math::Vector* mIncData = &mIncDataVector;  ///< the incremental data; by default owned by the pose
    int mUpdateIncFlag = 1;                    ///< 0 while mIncData is out of date
};

#pragma GCC diagnostic pop

}  // namespace tarvos::core::cvdata
