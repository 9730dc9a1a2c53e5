#include "plot/drawing.h"

#include <array>
#include <cmath>
#include <vector>

#include "text/numbers.h"

namespace kine_cli {
namespace {

constexpr double kSamePoint = 0.5;  // on the page
constexpr double kFoot = 1.6;       // radius of the foot, in widths of a link
constexpr std::string_view kAxisLine = "10 3 2 3";

std::vector<Point> OnPage(const View& view, const std::vector<Vec3>& points)
{
    std::vector<Point> page;
    for (const Vec3& point : points) {
        const Point p = view.At(point);
        const bool isNew = page.empty() || std::hypot(p.x - page.back().x, p.y - page.back().y) > kSamePoint;
        if (isNew) page.push_back(p);
    }
    return page;
}

// A stroke with a rim. A single point is left out.
void DrawBody(Svg& svg, const std::vector<Point>& points, double width, std::string_view fill)
{
    if (points.size() < 2) return;
    svg.Polyline(points, {colour::kInk, width});
    svg.Polyline(points, {fill, width - 2.2});
}

// A circle in the XY plane of a frame; `radius` on the page.
std::vector<Point> Disc(const View& view, const Transform& frame, double radius)
{
    constexpr int kCorners = 36;
    constexpr double kTurn = 6.283185307179586;
    const double mm = radius / view.Scale();
    std::vector<Point> points;
    for (int i = 0; i < kCorners; ++i) {
        const double angle = kTurn * i / kCorners;
        points.push_back(view.At(frame.At({mm * std::cos(angle), mm * std::sin(angle), 0.0})));
    }
    return points;
}

void DrawAlongView(Svg& svg, Point at, std::string_view colour, bool towards)
{
    constexpr double kRing = 4.5;
    svg.Circle(at, kRing, colour::kWhite, {colour, 1.3});
    if (towards) {
        svg.Circle(at, 1.6, colour, {colour::kNone});
        return;
    }
    const double arm = kRing * 0.7071;
    svg.Line({at.x - arm, at.y - arm}, {at.x + arm, at.y + arm}, {colour, 1.0});
    svg.Line({at.x - arm, at.y + arm}, {at.x + arm, at.y - arm}, {colour, 1.0});
}

const Transform& CarriedFrame(const CellScene& scene)
{
    return scene.toolIsHeld ? scene.tool : scene.workObject;
}

}  // namespace

void DrawArm(Svg& svg, const View& view, const ArmShape& arm, const DrawingSize& size)
{
    const std::vector<Point> foot = Disc(view, arm.base, kFoot * size.link);
    svg.Polygon(foot, colour::kJoint, {colour::kInk, 1.1});
    DrawBody(svg, OnPage(view, arm.outline), size.link, colour::kSteel);
    for (const Point& joint : OnPage(view, arm.joints))
        svg.Circle(joint, size.joint, colour::kJoint, {colour::kInk, 1.1});
}

void DrawSilhouette(Svg& svg, const View& view, const CellScene& scene)
{
    const std::vector<Point> arm = OnPage(view, scene.arm.outline);
    svg.BeginGroup("silhouette");
    for (const Stroke& stroke : {Stroke{colour::kWhite, 3.4}, Stroke{colour::kInk, 1.3}}) {
        svg.Polyline(arm, stroke);
        svg.Line(view.At(scene.arm.flange.origin), view.At(CarriedFrame(scene).origin), stroke);
    }
    for (const Point& joint : OnPage(view, scene.arm.joints))
        svg.Circle(joint, 2.6, colour::kWhite, {colour::kInk, 1.0});
    svg.EndGroup();
}

void DrawCarried(Svg& svg, const View& view, const CellScene& scene, const DrawingSize& size)
{
    const std::vector<Vec3> line = {scene.arm.flange.origin, CarriedFrame(scene).origin};
    DrawBody(svg, OnPage(view, line), 0.6 * size.link, scene.toolIsHeld ? colour::kTool : colour::kWork);
}

void DrawFrame(Svg& svg, const View& view, const Transform& frame, double length, std::string_view id)
{
    constexpr double kAlongView = 0.12;  // part of the length that is left of such an arrow
    const std::array<std::pair<Vec3, std::string_view>, 3> axes = {
        {{frame.x, colour::kRed}, {frame.y, colour::kGreen}, {frame.z, colour::kBlue}}};
    const Point origin = view.At(frame.origin);
    svg.BeginGroup(id);
    for (const auto& [axis, colour] : axes) {
        const Sight& sight = view.Direction();
        const Point end = {origin.x + length * sight.U(axis), origin.y - length * sight.V(axis)};
        if (std::hypot(sight.U(axis), sight.V(axis)) >= kAlongView) svg.Arrow(origin, end, {colour, 1.8});
    }
    svg.Circle(origin, 2.2, colour::kInk, {colour::kNone});
    for (const auto& [axis, colour] : axes) {
        const Sight& sight = view.Direction();
        if (std::hypot(sight.U(axis), sight.V(axis)) < kAlongView)
            DrawAlongView(svg, origin, colour, Dot(sight.Out(), axis) > 0.0);
    }
    svg.EndGroup();
}

void DrawUnit(Svg& svg, const View& view, const UnitShape& unit, std::string_view id)
{
    constexpr double kAxisLength = 34.0;  // on the page, to either side
    constexpr double kTable = 26.0;
    svg.BeginGroup(id);
    if (unit.isLinear) {
        const Point rail[] = {view.At(unit.railStart), view.At(unit.railEnd)};
        svg.Polyline(rail, {colour::kGrey, 6.0});
        svg.Polyline(rail, {colour::kWhite, 3.4});
        svg.Circle(view.At(unit.last.origin), 4.0, colour::kGrey, {colour::kNone});
    }
    if (!unit.isLinear && !unit.carriesRobot) {
        svg.Polygon(Disc(view, unit.last, kTable), colour::kWork, {colour::kInk, 1.1});
    }
    for (const Transform& axis : unit.axes) {
        if (unit.isLinear) continue;
        const double mm = kAxisLength / view.Scale();
        svg.Line(view.At(axis.At({0.0, 0.0, -mm})), view.At(axis.At({0.0, 0.0, mm})),
                 {colour::kPurple, 1.1, kAxisLine});
        svg.Circle(view.At(axis.origin), 2.6, colour::kPurple, {colour::kNone});
    }
    svg.EndGroup();
}

void AvoidArm(Labels& labels, const View& view, const ArmShape& arm)
{
    constexpr double kHalfWidth = 6.0;  // of a link or a joint
    std::vector<Point> outline = OnPage(view, arm.outline);
    labels.AvoidLines(outline);
    for (const double shift : {-kHalfWidth, kHalfWidth}) {
        std::vector<Point> beside = outline;
        for (Point& p : beside) p.x += shift;
        labels.AvoidLines(beside);
        beside = outline;
        for (Point& p : beside) p.y += shift;
        labels.AvoidLines(beside);
    }
    labels.AvoidLines(Disc(view, arm.base, kFoot * DrawingSize{}.link));
}

void AvoidFrame(Labels& labels, const View& view, const Transform& frame, double length)
{
    const Point origin = view.At(frame.origin);
    const Sight& sight = view.Direction();
    for (const Vec3& axis : {frame.x, frame.y, frame.z})
        labels.AvoidLine(origin, {origin.x + length * sight.U(axis), origin.y - length * sight.V(axis)});
}

void DrawHeading(Svg& svg, std::string_view title, std::string_view below)
{
    svg.Text({24.0, 32.0}, title, {18.0, Anchor::kStart, colour::kInk, true});
    svg.Text({24.0, 52.0}, below, {12.0, Anchor::kStart, colour::kGrey});
}

std::string TitleOf(const Cell& cell)
{
    constexpr std::size_t kLongest = 60;
    if (!cell.name.empty()) return Clipped(cell.name, kLongest);
    // A file name may be in any encoding.
    std::string name = cell.file.substr(cell.file.find_last_of('/') + 1);
    for (char& c : name) {
        if (static_cast<unsigned char>(c) >= 0x7F) c = '?';
    }
    return Clipped(name, kLongest);
}

std::string JointsText(const Cell& cell, const KineJoint& joints)
{
    std::string text;
    for (std::size_t i = 0; i < cell.AxisCount(); ++i) text += (i ? ", " : "") + ShortNumber(joints.Axis[i]);
    text += " deg";
    for (std::size_t i = 0; i < cell.externalAxes.size() && i < kExternalAxes; ++i) {
        text += ", e" + std::to_string(i + 1) + " = " + ShortNumber(joints.ExtAxis[i]) +
                (cell.externalAxes[i].linear ? " mm" : " deg");
    }
    return text;
}

}  // namespace kine_cli
