#include <cmath>

#include "library/codes.h"
#include "plot/drawing.h"
#include "plot/pictures.h"
#include "text/numbers.h"

namespace kine_cli {
namespace {

constexpr double kPanelWidth = 232.0;
constexpr double kViewHeight = 220.0;
constexpr double kPanelHeight = 322.0;
constexpr double kGap = 10.0;
constexpr double kEdge = 20.0;
constexpr double kTop = 82.0;
constexpr double kBelow = 34.0;
constexpr double kWordsHeight = 46.0;  // over the picture of a panel

struct PosturePanel
{
    PostureAnswer answer;
    KineJoint joints{};
    CellScene scene;
};

// The joints of a posture: the turns within the limits that are nearest to zero.
KineJoint JointsOf(const ReadyCell& ready, const Solutions& solutions, std::size_t posture)
{
    const PostureChoice only = {static_cast<std::uint32_t>(solutions.postures.size() - 1),
                                static_cast<std::uint32_t>(posture)};
    const Solution* nearest = Nearest(ready, solutions, KineJoint{}, only);
    return nearest ? nearest->joints : solutions.postures[posture].joints;
}

// Six-axis arms from the side, square to the upright plane through the base and the flange; the others from
// above.
Sight SightOf(const Cell& cell, const std::vector<PosturePanel>& panels)
{
    if (!cell.IsSixAxis()) return TopSight();
    Sight sight = SideSight();
    sight.rightName = "out";
    for (const PosturePanel& panel : panels) {
        if (panel.answer.code != KINE_OK) continue;
        const Vec3 out = panel.scene.arm.flange.origin - panel.scene.arm.base.origin;
        const double length = std::hypot(out.x, out.y);
        if (length > 1e-3) sight.right = {out.x / length, out.y / length, 0.0};
        return sight;
    }
    return sight;
}

Bounds BoundsOf(const Sight& sight, const std::vector<PosturePanel>& panels)
{
    Bounds bounds;
    for (const PosturePanel& panel : panels) {
        if (panel.answer.code != KINE_OK) continue;
        const CellScene& scene = panel.scene;
        for (const Vec3& point : scene.arm.outline) bounds.Include(sight.U(point), sight.V(point));
        bounds.Include(sight.U(scene.tool.origin), sight.V(scene.tool.origin));
        if (!scene.toolIsHeld)
            bounds.Include(sight.U(scene.workObject.origin), sight.V(scene.workObject.origin));
    }
    return bounds;
}

std::string JointsLine(const KineJoint& joints, std::size_t first, std::size_t count)
{
    std::string names;
    std::string values;
    for (std::size_t i = first; i < first + count; ++i) {
        names += "q" + std::to_string(i + 1) + " ";
        values += (i > first ? ", " : "") + Fixed(joints.Axis[i], 1);
    }
    return names + "= " + values;
}

void DrawPosture(Svg& svg, const View& view, const PosturePanel& panel, const std::string& id)
{
    const DrawingSize size = {7.0, 4.0, 24.0};
    const CellScene& scene = panel.scene;
    DrawArm(svg, view, scene.arm, size);
    DrawCarried(svg, view, scene, size);
    if (!scene.toolIsHeld) DrawFrame(svg, view, scene.workObject, size.axis, id + "-wobj");
    DrawFrame(svg, view, scene.tool, size.axis, id + "-tool");
}

// What stands over and under the picture of a panel.
void DrawWords(Svg& svg, Point corner, const Cell& cell, const KineArmConfig& config,
               const PosturePanel& panel)
{
    const double middle = corner.x + kPanelWidth / 2;
    const Lettering grey = {11.0, Anchor::kMiddle, colour::kGrey};
    svg.Text({middle, corner.y + 20.0}, PostureWords(cell.armType, config),
             {13.0, Anchor::kMiddle, colour::kInk, true});
    svg.Text(
        {middle, corner.y + 36.0},
        cell.IsSixAxis() ? "Cfg4 = " + std::to_string(config.Cfg4) : "Cfg1 = " + std::to_string(config.Cfg1),
        grey);
    if (panel.answer.code != KINE_OK) {
        const double centre = corner.y + kWordsHeight + kViewHeight / 2;
        svg.Text({middle, centre}, HexCode(panel.answer.code), {12.0, Anchor::kMiddle, colour::kRed});
        svg.Text({middle, centre + 18.0}, NameOf(panel.answer.code), {12.0, Anchor::kMiddle, colour::kRed});
        return;
    }
    const double below = corner.y + kWordsHeight + kViewHeight;
    const std::size_t firstLine = cell.IsSixAxis() ? 3 : 2;
    svg.Text({middle, below + 18.0}, JointsLine(panel.joints, 0, firstLine), grey);
    svg.Text({middle, below + 33.0}, JointsLine(panel.joints, firstLine, cell.AxisCount() - firstLine), grey);
    if (!panel.answer.withinLimits) {
        svg.Text({middle, below + 48.0}, "outside the limits",
                 {11.0, Anchor::kMiddle, colour::kOrange, true});
    }
}

std::string TargetText(const CellScene& scene, const KinePose& pose)
{
    constexpr std::size_t kLongest = 30;
    const KineFrame& f = pose.Frame;
    std::string text = "Tool at ";
    for (const double value : {f.X, f.Y, f.Z}) text += Fixed(value, 1) + ", ";
    text.replace(text.size() - 2, 2, " mm; A, B, C ");
    for (const double value : {f.A, f.B, f.C}) text += Fixed(value, 1) + ", ";
    text.replace(text.size() - 2, 2, " deg in ");
    const std::string& name = scene.workObjectName;
    return text + (name == kNone ? "the world" : "work object " + Clipped(name, kLongest));
}

}  // namespace

std::string PosturesPicture(const ReadyCell& ready, const Selection& selection, const KinePose& pose,
                            PrintedLines& printed)
{
    const Cell& cell = ready.cell;
    const Solutions solutions = Solve(ready, pose, printed);
    CellScene named;
    named.workObjectName = selection.workObject.empty() ? cell.use.workObject : selection.workObject;
    std::vector<PosturePanel> panels;
    for (std::size_t i = 0; i < solutions.postures.size(); ++i) {
        PosturePanel& panel = panels.emplace_back();
        panel.answer = solutions.postures[i];
        if (panel.answer.code != KINE_OK) continue;
        panel.joints = JointsOf(ready, solutions, i);
        panel.scene = PlaceCell(ready, selection, panel.joints, printed);
    }
    const Sight sight = SightOf(cell, panels);
    Bounds bounds = BoundsOf(sight, panels);
    constexpr double kMargin = 30.0;
    constexpr double kSmallest = 1e-3;
    const double scale = std::min((kPanelWidth - 2 * kMargin) / std::max(bounds.Width(), kSmallest),
                                  (kViewHeight - 2 * kMargin) / std::max(bounds.Height(), kSmallest));
    const double centreU = (bounds.left + bounds.right) / 2;
    const double centreV = (bounds.bottom + bounds.top) / 2;
    bounds = {centreU - kPanelWidth / scale / 2, centreU + kPanelWidth / scale / 2,
              centreV - kViewHeight / scale / 2, centreV + kViewHeight / scale / 2, false};

    const std::size_t columns = cell.IsSixAxis() ? 4 : 2;
    const std::size_t rows = panels.size() / columns;
    const double width = 2 * kEdge - kGap + static_cast<double>(columns) * (kPanelWidth + kGap);
    const double height = kTop + static_cast<double>(rows) * (kPanelHeight + kGap) + kBelow;
    const std::string title = TitleOf(cell) + ", postures of one target";
    Svg svg(width, height, title);
    DrawHeading(svg, title, TargetText(named, pose));
    const std::vector<KineArmConfig> postures = PosturesOf(cell.armType);
    for (std::size_t i = 0; i < panels.size(); ++i) {
        const Point corner = {kEdge + static_cast<double>(i % columns) * (kPanelWidth + kGap),
                              kTop + static_cast<double>(i / columns) * (kPanelHeight + kGap)};
        const std::string id = "posture" + std::to_string(i);
        svg.BeginGroup(id);
        const Point frame[] = {corner,
                               {corner.x + kPanelWidth, corner.y},
                               {corner.x + kPanelWidth, corner.y + kPanelHeight},
                               {corner.x, corner.y + kPanelHeight}};
        svg.Polygon(frame, colour::kNone, {colour::kPale, 1.0});
        const View view(sight, bounds, {corner.x, corner.y + kWordsHeight}, scale);
        if (panels[i].answer.code == KINE_OK) DrawPosture(svg, view, panels[i], id);
        DrawWords(svg, corner, cell, postures[i], panels[i]);
        svg.EndGroup();
    }
    svg.Text({kEdge, height - kBelow + 10.0},
             cell.IsSixAxis() ? "Degrees. Seen square to the upright plane through base and flange."
                              : "Degrees; axis 3 is the angle of the screw. Seen from above.",
             {11.0, Anchor::kStart, colour::kGrey});
    return svg.Document();
}

}  // namespace kine_cli
