// Builders of public records, what they hold, and comparisons of records bit by bit.
#pragma once

#include <array>
#include <cstring>
#include <initializer_list>

#include "KineDll.h"

namespace kine::test {

// The numbers of a frame, in turn.
inline constexpr std::array<double KineFrame::*, 6> kElements = {&KineFrame::X, &KineFrame::Y, &KineFrame::Z,
                                                                 &KineFrame::A, &KineFrame::B, &KineFrame::C};
inline constexpr std::array<double KineFrame::*, 3> kCoordinates = {&KineFrame::X, &KineFrame::Y,
                                                                    &KineFrame::Z};
inline constexpr std::array<double KineFrame::*, 3> kAngles = {&KineFrame::A, &KineFrame::B, &KineFrame::C};

inline KineJoint MakeJoints(std::initializer_list<double> axes)
{
    KineJoint joints{};
    std::size_t i = 0;
    for (const double axis : axes) joints.Axis[i++] = axis;
    return joints;
}

inline KineJoint MakeJoints(const std::array<double, 6>& axes)
{
    KineJoint joints{};
    for (std::size_t i = 0; i < axes.size(); ++i) joints.Axis[i] = axes[i];
    return joints;
}

inline KineTool HeldTool(const KineFrame& frame = {})
{
    KineTool tool{};
    tool.HeldByRobot = 1;
    tool.TFrame = frame;
    return tool;
}

inline KineTool StationaryTool(const KineFrame& frame = {})
{
    KineTool tool{};
    tool.TFrame = frame;
    return tool;
}

inline KineWobj FixedWobj(const KineFrame& user = {}, const KineFrame& object = {})
{
    KineWobj wobj{};
    wobj.UFFix = 1;
    wobj.UFrame = user;
    wobj.OFrame = object;
    return wobj;
}

inline KineWobj HeldWobj(const KineFrame& user = {}, const KineFrame& object = {})
{
    KineWobj wobj = FixedWobj(user, object);
    wobj.HeldByRobot = 1;
    return wobj;
}

inline KineWobj WobjOnUnit(int unit, const KineFrame& object = {})
{
    KineWobj wobj{};
    wobj.MechUnitIndex = static_cast<int8_t>(unit);
    wobj.OFrame = object;
    return wobj;
}

inline KineLoad MakeLoad(double mass, double x, double y, double z)
{
    KineLoad load{};
    load.Mass = mass;
    load.Cog[0] = x;
    load.Cog[1] = y;
    load.Cog[2] = z;
    return load;
}

// How a request passes a record, or a null pointer in its place.
template <class Record>
const Record* AddressUnless(bool null, const Record& record)
{
    return null ? nullptr : &record;
}

// A record filled with a pattern that no result has, to see whether a call wrote to it.
template <class Record>
Record Untouched()
{
    Record record;
    std::memset(static_cast<void*>(&record), 0xA5, sizeof record);
    return record;
}

template <class Record>
bool SameBits(const Record& a, const Record& b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

template <class Record>
bool IsUntouched(const Record& record)
{
    return SameBits(record, Untouched<Record>());
}

}  // namespace kine::test
