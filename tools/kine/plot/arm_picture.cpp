#include <algorithm>
#include <array>

#include "library/codes.h"
#include "plot/drawing.h"
#include "plot/pictures.h"
#include "text/numbers.h"

namespace kine_cli {
namespace {

constexpr double kLeft = 66.0;
constexpr double kTop = 104.0;
constexpr double kPanelWidth = 420.0;
constexpr double kPanelHeight = 480.0;
constexpr double kBetween = 76.0;
constexpr double kBelow = 74.0;
// A frame farther from the arm than this many times its reach would leave no room for the arm.
constexpr double kFar = 3.0;

struct NamedFrame
{
    std::string id;
    std::string label;
    Transform frame;
    double length = 42.0;
};

std::string Quoted(const std::string& kind, const std::string& name)
{
    constexpr std::size_t kLongest = 24;
    return name == kNone ? kind : kind + " " + Clipped(name, kLongest);
}

bool IsSame(const Transform& a, const Transform& b)
{
    return Length(a.origin - b.origin) + Length(a.x - b.x) + Length(a.y - b.y) < 1e-6;
}

// The frames to draw. Frames that coincide share a label; far ones are left out and named in `note`.
std::vector<NamedFrame> FramesOf(const CellScene& scene, double reach, std::string& note)
{
    std::vector<NamedFrame> frames;
    const auto add = [&](const std::string& id, const std::string& label, const Transform& frame,
                         double length) {
        if (Length(frame.origin - scene.arm.base.origin) > kFar * reach) {
            note += (note.empty() ? "Too far away to show: " : ", ") + label + " at " +
                    Fixed(frame.origin.x, 0) + ", " + Fixed(frame.origin.y, 0) + ", " +
                    Fixed(frame.origin.z, 0) + " mm";
            return;
        }
        for (NamedFrame& other : frames) {
            if (!IsSame(other.frame, frame)) continue;
            other.label += ", " + label;
            return;
        }
        frames.push_back({id, label, frame, length});
    };
    add("base", "base", scene.arm.base, 52.0);
    add("flange", "flange", scene.arm.flange, 32.0);
    add("tool", scene.toolIsHeld ? Quoted("tool", scene.toolName) : Quoted("stationary tool", scene.toolName),
        scene.tool, 42.0);
    if (scene.workObjectName != kNone)
        add("wobj", Quoted("work object", scene.workObjectName), scene.workObject, 46.0);
    if (scene.baseIsCarried) add("world", "world", Transform{}, 52.0);
    return frames;
}

Bounds BoundsOf(const Sight& sight, const CellScene& scene, const std::vector<NamedFrame>& frames,
                double reach)
{
    Bounds bounds;
    const auto include = [&](const Vec3& p) { bounds.Include(sight.U(p), sight.V(p)); };
    for (const Vec3& point : scene.arm.outline) include(point);
    for (const NamedFrame& frame : frames) include(frame.frame.origin);
    for (const UnitShape& unit : scene.units) {
        if (Length(unit.last.origin - scene.arm.base.origin) > kFar * reach) continue;
        include(unit.last.origin);
        for (const Transform& axis : unit.axes) include(axis.origin);
        if (!unit.isLinear) continue;
        include(unit.railStart);
        include(unit.railEnd);
    }
    return bounds;
}

void DrawPanel(Svg& svg, const View& view, const CellScene& scene, const std::vector<NamedFrame>& frames,
               const std::string& id)
{
    const DrawingSize size;
    svg.BeginGroup(id);
    view.DrawAxes(svg);
    Labels labels(view);
    for (const UnitShape& unit : scene.units)
        DrawUnit(svg, view, unit, id + "-unit" + std::to_string(unit.index));
    DrawArm(svg, view, scene.arm, size);
    DrawCarried(svg, view, scene, size);
    AvoidArm(labels, view, scene.arm);
    for (const NamedFrame& frame : frames) {
        DrawFrame(svg, view, frame.frame, frame.length, id + "-" + frame.id);
        AvoidFrame(labels, view, frame.frame, frame.length);
    }
    for (const NamedFrame& frame : frames) {
        labels.Place(svg, view.At(frame.frame.origin), frame.label,
                     {12.0, Anchor::kStart, colour::kInk, true});
    }
    for (const UnitShape& unit : scene.units) {
        constexpr std::size_t kLongest = 24;
        const Point at =
            unit.isLinear ? view.At(0.5 * (unit.railStart + unit.railEnd)) : view.At(unit.axes.back().origin);
        labels.Place(svg, at, Clipped(unit.name.empty() ? "mechanical unit" : unit.name, kLongest),
                     {12.0, Anchor::kStart, colour::kPurple});
    }
    svg.EndGroup();
}

std::string PoseText(const ReadyCell& ready, const KineJoint& joints, PrintedLines& printed)
{
    KinePose pose{};
    const KineResult code = JointsToPose(joints, ready.records, Reference::kWorld, pose);
    if (code != KINE_OK) FailRefused("the joints", code, printed);
    const KineFrame& f = pose.Frame;
    std::string text = "Tool centre point in the world: ";
    for (const double value : {f.X, f.Y, f.Z}) text += Fixed(value, 2) + ", ";
    text.replace(text.size() - 2, 2, " mm; A, B, C ");
    for (const double value : {f.A, f.B, f.C}) text += Fixed(value, 2) + ", ";
    return text.replace(text.size() - 2, 2, " deg");
}

}  // namespace

std::string ArmPicture(const ReadyCell& ready, const Selection& selection, const KineJoint& joints,
                       PrintedLines& printed)
{
    const CellScene scene = PlaceCell(ready, selection, joints, printed);
    const double reach = ReachOf(ready.cell) + Length(ShoulderOf(ready.cell));
    std::string note;
    const std::vector<NamedFrame> frames = FramesOf(scene, reach, note);

    const std::array<Sight, 2> sights = {SideSight(), TopSight()};
    std::array<Bounds, 2> bounds;
    double scale = 0.0;
    constexpr double kMargin = 62.0;  // on the page: room for arrows and labels
    for (std::size_t i = 0; i < sights.size(); ++i) {
        bounds[i] = BoundsOf(sights[i], scene, frames, reach);
        constexpr double kSmallest = 1e-3;  // mm, of a picture
        const double fits = std::min((kPanelWidth - 2 * kMargin) / std::max(bounds[i].Width(), kSmallest),
                                     (kPanelHeight - 2 * kMargin) / std::max(bounds[i].Height(), kSmallest));
        scale = i == 0 ? fits : std::min(scale, fits);
    }
    double height = 0.0;
    for (Bounds& part : bounds) {
        part.Grow(kMargin / scale);
        // Both panels have the full width, with what is drawn in the middle.
        const double missing = kPanelWidth / scale - part.Width();
        part.left -= missing / 2;
        part.right += missing / 2;
        height = std::max(height, part.Height() * scale);
    }
    const double width = 2 * kPanelWidth + kBetween + kLeft + 24.0;
    Svg svg(width, kTop + height + kBelow,
            TitleOf(ready.cell) + ", joints " + JointsText(ready.cell, joints));
    DrawHeading(svg, TitleOf(ready.cell), "Joints " + JointsText(ready.cell, joints));
    svg.Text({24.0, 69.0}, PoseText(ready, joints, printed), {12.0, Anchor::kStart, colour::kGrey});
    for (std::size_t i = 0; i < sights.size(); ++i) {
        const double left = kLeft + static_cast<double>(i) * (kPanelWidth + kBetween);
        const View view(sights[i], bounds[i], {left, kTop}, scale);
        svg.Text({left + kPanelWidth / 2, kTop - 10.0}, i == 0 ? "from the side" : "from above",
                 {13.0, Anchor::kMiddle, colour::kInk, true});
        DrawPanel(svg, view, scene, frames, i == 0 ? "side" : "top");
    }
    const double foot = kTop + height + kBelow - 14.0;
    svg.Text({24.0, foot},
             "Frames: X red, Y green, Z blue; a ring is an axis along the line of sight. " + note,
             {11.0, Anchor::kStart, colour::kGrey});
    return svg.Document();
}

}  // namespace kine_cli
