// One target of a command: joints or a pose, from the command line, a file or a pipe.
#pragma once

#include <cstddef>
#include <string_view>

#include "KineDll.h"

namespace kine_cli {

enum class Shape
{
    kJoints,
    kPoses,
    kEither  // the header of the file says which
};

struct Target
{
    std::string_view name;  // its own, or the number of its line
    KineJoint joints{};
    KinePose pose{};
    bool hasConfig = false;  // the pose came with its four integers
    // A row that another command refused has no numbers; it goes through with this code.
    KineResult refusedBefore = KINE_OK;
};

// How many values of each kind a target has.
struct Widths
{
    std::size_t axes = 6;
    std::size_t externalAxes = 0;
};

}  // namespace kine_cli
