// The arms and cells that are measured, by name, and setting the library up for them. Degrees and
// millimetres.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "KineDll.h"
#include "support/speed_inputs.h"

namespace kine::bench {

struct Arm
{
    std::string name;
    std::uint32_t type;
    KineKinematicParam param;
};

// Six-axis arms rigid, with link errors, with gravity, and with gravity on a tilted base; four-axis arms of
// both types with and without tilts.
std::vector<Arm> Arms();
Arm ArmCalled(const std::string& name);

struct Cell
{
    std::string name;
    test::CellRecords records;
    KineMechUnit carrier;     // of the robot; kind 0: none
    KineMechUnit positioner;  // of the work object; kind 0: none
    int unitAxes;             // of both
};

// An empty cell, one with loads, one with user and object frames too, a stationary tool, and mechanical units
// of every kind under the robot, under the work object and under both.
std::vector<Cell> Cells();
Cell CellCalled(const std::string& name);

// Throws when the library refuses the arm or a unit.
void SetUp(const Arm& arm, const Cell& cell);

}  // namespace kine::bench
