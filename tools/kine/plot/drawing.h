// What pictures of a cell are put together from: the arm, its tool, frames and mechanical units, in one view.
#pragma once

#include <string>
#include <string_view>

#include "plot/cell_scene.h"
#include "plot/svg.h"
#include "plot/view.h"

namespace kine_cli {

struct DrawingSize
{
    double link = 10.0;  // widths on the page
    double joint = 5.5;
    double axis = 42.0;  // length of the arrows of a frame
};

// Links as strokes, joints as circles.
void DrawArm(Svg& svg, const View& view, const ArmShape& arm, const DrawingSize& size);
// Thin lines only, over a map.
void DrawSilhouette(Svg& svg, const View& view, const CellScene& scene);
// What the flange carries, from the flange to its frame.
void DrawCarried(Svg& svg, const View& view, const CellScene& scene, const DrawingSize& size);
// X red, Y green, Z blue; an axis that points at the viewer is a dot in a ring, one that points away a cross
// in it. The group has the name of the frame.
void DrawFrame(Svg& svg, const View& view, const Transform& frame, double length, std::string_view id);
void DrawUnit(Svg& svg, const View& view, const UnitShape& unit, std::string_view id);

// The same parts for labels to keep clear of.
void AvoidArm(Labels& labels, const View& view, const ArmShape& arm);
void AvoidFrame(Labels& labels, const View& view, const Transform& frame, double length);

// Title at the top left, and a line in grey below.
void DrawHeading(Svg& svg, std::string_view title, std::string_view below);

// The name of the cell, or of its file.
std::string TitleOf(const Cell& cell);
// "10, 20.5, -30" with an external axis as "e1 = 300"
std::string JointsText(const Cell& cell, const KineJoint& joints);

}  // namespace kine_cli
