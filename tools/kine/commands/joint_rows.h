// Rows of joints with the words of their posture, as ik, jog and align write them.
#pragma once

#include <string_view>
#include <vector>

#include "rows/row_writer.h"
#include "solve/solutions.h"

namespace kine_cli {

Column PostureColumn(const PostureTexts& texts);
std::vector<Column> JointAndPostureColumns(Widths widths, const PostureTexts& texts);

// The posture of these joints.
std::string_view PostureOf(const KineJoint& joints, const PostureTexts& texts);

}  // namespace kine_cli
