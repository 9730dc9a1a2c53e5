// The pictures of `kine plot`. Each returns a whole document.
#pragma once

#include <optional>
#include <string>

#include "plot/cell_scene.h"
#include "solve/solutions.h"

namespace kine_cli {

// Side and top view of the cell in a pose.
std::string ArmPicture(const ReadyCell& ready, const Selection& selection, const KineJoint& joints,
                       PrintedLines& printed);

// The postures that reach a pose in the work object, side by side.
std::string PosturesPicture(const ReadyCell& ready, const Selection& selection, const KinePose& pose,
                            PrintedLines& printed);

// A plane of the world, and how the tool stands in it.
struct PlaneOptions
{
    bool isVertical = true;      // XZ, else XY
    std::optional<double> at;    // Y of the plane, or Z; mm
    KineFrame orientation{};     // of the tool in the world: A, B, C
    std::optional<double> step;  // mm
    std::string posture;         // words
    KineJoint joints{};          // the arm over the map, and the external axes of all targets
};

std::string ReachPicture(const ReadyCell& ready, const Selection& selection, const PlaneOptions& options,
                         PrintedLines& printed);
// Fails (usage) for an arm that does not bend.
std::string DeflectionPicture(const ReadyCell& ready, const Selection& selection, const PlaneOptions& options,
                              PrintedLines& printed);

}  // namespace kine_cli
