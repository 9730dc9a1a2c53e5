// What the speed of the library is measured on: a cell with everything in it, and random joints clear of
// singularities. Through the exports, without the test framework. Degrees and millimetres.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "KineDll.h"
#include "support/records.h"
#include "support/seeded_random.h"

namespace kine::test {

// The records of one call.
struct CellRecords
{
    KineTool tool;
    KineWobj wobj;
    KineLoad load;
};

// A loaded tool on the flange, a payload, a work object in the world with user and object frame.
inline CellRecords WorkingCell()
{
    CellRecords cell{
        HeldTool({30.0, -40.0, 150.0, 20.0, -35.0, 75.0}),
        FixedWobj({400.0, -200.0, 100.0, 15.0, 25.0, -10.0}, {-50.0, 80.0, 20.0, -95.0, 5.0, 45.0}),
        MakeLoad(5.0, -20.0, 30.0, 40.0)};
    cell.tool.TLoad = MakeLoad(3.0, 10.0, -5.0, 60.0);
    return cell;
}

inline KineJoint RandomJoints(std::uint32_t armType, SeededRandom& random)
{
    KineJoint joints{};
    if (armType == KINE_ARM_SIX_AXIS) {
        // Ranges as arms have them, both elbows included.
        joints = MakeJoints({random.Uniform(-170.0, 170.0), random.Uniform(-110.0, 110.0),
                             random.Uniform(-85.0, 245.0), random.Uniform(-170.0, 170.0),
                             random.Uniform(-120.0, 120.0), random.Uniform(-170.0, 170.0)});
    } else {
        // Where tilts lengthen a nearly stretched arm, the arm without tilts, which the inverse starts from,
        // does not reach as far: the elbow stays bent. Axis 3 is the angle of the screw; axis 2 of type 4110
        // is the elbow angle less half a turn.
        const double side = random.Whole(0, 1) == 1 ? 1.0 : -1.0;
        const double elbow = side * random.Uniform(20.0, 150.0);
        joints = MakeJoints({random.Uniform(-160.0, 160.0),
                             armType == KINE_ARM_FOUR_AXIS_4110 ? elbow - side * 180.0 : elbow,
                             random.Uniform(-1500.0, 1500.0), random.Uniform(-170.0, 170.0)});
    }
    for (double& extAxis : joints.ExtAxis) extAxis = random.Uniform(-170.0, 170.0);
    return joints;
}

// Not singular by the wider of the two warnings. The four-axis arms refine the raw difference of headings, so
// that a heading near +-180 degrees does not belong here.
inline bool IsRegular(std::uint32_t armType, const KineJoint& joints, const CellRecords& cell)
{
    constexpr std::uint32_t kWideWarning = 2;
    if (Kine_IsSingularity(&joints, kWideWarning) != KINE_OK) return false;
    if (armType == KINE_ARM_SIX_AXIS) return true;

    constexpr double kFarthestHeading = 170.0;
    KinePose base{};
    return Kine_JointToBasePos(&joints, &cell.tool, &cell.wobj, &cell.load, &base) == KINE_OK &&
           std::fabs(base.Frame.A) < kFarthestHeading;
}

// Regular joints of the arm that the library is set up for. Every draw has an even chance or better, so that
// the loop ends.
inline std::vector<KineJoint> RegularJoints(std::uint32_t armType, const CellRecords& cell, std::size_t count,
                                            std::uint64_t seed)
{
    SeededRandom random(seed);
    std::vector<KineJoint> list;
    while (list.size() < count) {
        const KineJoint joints = RandomJoints(armType, random);
        if (IsRegular(armType, joints, cell)) list.push_back(joints);
    }
    return list;
}

}  // namespace kine::test
