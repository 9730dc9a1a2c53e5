// A cell in one pose: everything that a picture shows, in the world.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "options.h"
#include "plot/arm_chain.h"

namespace kine_cli {

struct UnitShape
{
    std::string name;
    std::size_t index = 0;
    bool carriesRobot = false;
    bool isLinear = false;
    std::vector<Transform> axes;  // a rotary axis turns about Z of its frame; the first frame of a linear one
    Transform last;               // what the unit carries stands here
    Vec3 railStart;               // of a linear axis
    Vec3 railEnd;
};

struct CellScene
{
    ArmShape arm;
    bool baseIsCarried = false;
    std::string toolName;
    bool toolIsHeld = true;
    Transform tool;  // the tool centre point
    std::string workObjectName;
    Transform workObject;
    std::vector<UnitShape> units;
};

// The joints that a picture shows when none are asked for: those named "home", else the first ones of the
// cell, else zeros.
KineJoint HomeOf(const Cell& cell);

// Fails (refused) when the library does: for a work object on a unit that is none, or a tool and a work
// object that are both held. Fails (usage) when a part of the cell is too far away to draw.
CellScene PlaceCell(const ReadyCell& ready, const Selection& selection, const KineJoint& joints,
                    PrintedLines& printed);

// Ends the command with the library's refusal and its lines.
[[noreturn]] void FailRefused(const std::string& what, KineResult code, PrintedLines& printed);

}  // namespace kine_cli
