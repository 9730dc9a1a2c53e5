#include "plot/plane_map.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "plot/drawing.h"
#include "text/numbers.h"

namespace kine_cli {
namespace {

constexpr double kMostTargets = 250000;
// Targets across the reach when no step is asked for, at most; the step is a round number.
constexpr double kUsualColumns = 200.0;
constexpr double kLeft = 72.0;
constexpr double kTop = 92.0;
constexpr double kMapSide = 560.0;
constexpr double kBelow = 46.0;
constexpr double kLegendWidth = 306.0;
constexpr double kLegendLine = 22.0;
constexpr double kNoteSize = 11.0;
constexpr double kLeastHeight = 300.0;

// A sentence in lines that fit under the legend.
std::vector<std::string> Wrapped(std::string_view text)
{
    std::vector<std::string> lines = {""};
    while (!text.empty()) {
        const std::string_view word = text.substr(0, text.find(' '));
        text.remove_prefix(std::min(word.size() + 1, text.size()));
        std::string& last = lines.back();
        const std::string longer = last + (last.empty() ? "" : " ") + std::string(word);
        if (last.empty() || TextWidth(longer, kNoteSize) < kLegendWidth - 24.0) {
            last = longer;
        } else {
            lines.emplace_back(word);
        }
    }
    return lines;
}

// As the document has it, so that neighbours share their edges to the last digit.
Point Rounded(Point p) { return {std::round(100.0 * p.x) / 100.0, std::round(100.0 * p.y) / 100.0}; }

// The cell whose tool is what the flange carries and whose work object is the world.
ReadyCell WithWorld(const ReadyCell& ready, PrintedLines& printed)
{
    ReadyCell world = ready;
    if (ready.records.tool.HeldByRobot == 0) {
        KinePose user{};
        if (ready.records.wobj.UFFix == 1) user.Frame = ready.records.wobj.UFrame;
        KinePose carried{};
        const KineResult code = Kine_ToolCoordOffset(&user, &ready.records.wobj.OFrame, &carried);
        if (code != KINE_OK) FailRefused("the work object", code, printed);
        world.records.tool.TFrame = carried.Frame;
        world.records.tool.HeldByRobot = 1;
    }
    world.records.wobj = KineWobj{};
    world.records.wobj.UFFix = 1;
    return world;
}

std::string NameOfCarried(const std::string& kind, const std::string& name)
{
    constexpr std::size_t kLongest = 24;
    return name == kNone ? (kind == "Tool" ? "Flange" : kind) : kind + " " + Clipped(name, kLongest);
}

}  // namespace

PlaneMap::PlaneMap(const ReadyCell& ready, const Selection& selection, const PlaneOptions& options,
                   PrintedLines& printed)
    : options_(options),
      targets_(WithWorld(ready, printed)),
      scene_(PlaceCell(ready, selection, options.joints, printed)),
      carried_(scene_.toolIsHeld ? NameOfCarried("Tool", scene_.toolName)
                                 : NameOfCarried("Held work object", scene_.workObjectName)),
      sight_(options.isVertical ? SideSight() : TopSight())
{
    const Cell& cell = ready.cell;
    const KineFrame& tool = targets_.records.tool.TFrame;
    const Transform& base = scene_.arm.base;
    const Vec3 inTool = {tool.X, tool.Y, tool.Z};
    const Vec3 usual = cell.IsSixAxis() ? base.origin : base.At(ShoulderOf(cell) + Vec3{0.0, 0.0, tool.Z});
    at_ = options.at.value_or(options.isVertical ? usual.y : usual.z);

    const double reach = ReachOf(cell) + Length(inTool);
    step_ = options.step.value_or(RoundStep(2.0 * reach / kUsualColumns));
    const Vec3 shoulder = base.At(ShoulderOf(cell));
    const double across = 2.0 * reach / step_ + 1.0;
    if (!(across * across <= kMostTargets)) {
        FailUsage("--step " + Fixed(step_, 3) + " makes some " + Fixed(across * across, 0) +
                  " targets; at most " + Fixed(kMostTargets, 0) + " are drawn");
    }
    first_ = std::ceil((sight_.U(shoulder) - reach) / step_);
    lowest_ = std::ceil((sight_.V(shoulder) - reach) / step_);
    columns_ = static_cast<std::size_t>(std::floor((sight_.U(shoulder) + reach) / step_) - first_ + 1.0);
    rows_ = static_cast<std::size_t>(std::floor((sight_.V(shoulder) + reach) / step_) - lowest_ + 1.0);
    classes_.assign(columns_ * rows_, 0);
}

KinePose PlaneMap::TargetAt(std::size_t column, std::size_t row) const
{
    KinePose pose{};
    pose.Frame = options_.orientation;
    if (!targets_.cell.IsSixAxis()) pose.Frame.B = pose.Frame.C = 0.0;
    pose.Frame.X = U(column);
    pose.Frame.Y = options_.isVertical ? at_ : V(row);
    pose.Frame.Z = options_.isVertical ? V(row) : at_;
    std::copy(std::begin(options_.joints.ExtAxis), std::end(options_.joints.ExtAxis), pose.ExtAxis);
    return pose;
}

std::size_t PlaneMap::CountOf(MapClass mapClass) const
{
    return static_cast<std::size_t>(std::count(classes_.begin(), classes_.end(), mapClass));
}

std::string PlaneMap::PlaneText() const
{
    return options_.isVertical ? "plane XZ at Y = " + ShortNumber(at_) + " mm"
                               : "plane XY at Z = " + ShortNumber(at_) + " mm";
}

std::string PlaneMap::PlaceText(std::size_t column, std::size_t row) const
{
    return "X " + StepText(U(column), step_) + ", " + std::string(sight_.upName) + " " +
           StepText(V(row), step_) + " mm";
}

std::string PlaneMap::Conditions() const
{
    constexpr std::size_t kLongest = 40;
    const KineFrame& f = options_.orientation;
    std::string text = carried_;
    text += targets_.cell.IsSixAxis()
                ? " with A, B, C " + ShortNumber(f.A) + ", " + ShortNumber(f.B) + ", " + ShortNumber(f.C)
                : " with A " + ShortNumber(f.A);
    text +=
        " deg in the world, a target every " + (step_ < 1.0 ? Fixed(step_, 4) : ShortNumber(step_)) + " mm, ";
    return text +
           (options_.posture.empty() ? "all postures" : "postures " + Clipped(options_.posture, kLongest));
}

Bounds PlaneMap::Shown() const
{
    Bounds shown;
    for (std::size_t row = 0; row < rows_; ++row) {
        for (std::size_t column = 0; column < columns_; ++column) {
            if (classes_[row * columns_ + column] != 0) shown.Include(U(column), V(row));
        }
    }
    for (const Vec3& point : scene_.arm.outline) shown.Include(sight_.U(point), sight_.V(point));
    const Vec3& carried = scene_.toolIsHeld ? scene_.tool.origin : scene_.workObject.origin;
    shown.Include(sight_.U(carried), sight_.V(carried));
    shown.Grow(std::max(1.5 * step_, 0.04 * std::max(shown.Width(), shown.Height())));
    return shown;
}

void PlaneMap::DrawCells(Svg& svg, const View& view, const std::vector<LegendEntry>& legend) const
{
    svg.BeginGroup("map");
    for (std::size_t row = 0; row < rows_; ++row) {
        const MapClass* const line = &classes_[row * columns_];
        // Cells of one class in a row are one rectangle.
        for (std::size_t column = 0, end = 0; column < columns_; column = end) {
            while (end < columns_ && line[end] == line[column]) ++end;
            if (line[column] == 0) continue;
            const Point corner = Rounded(view.OnPage(U(column) - step_ / 2, V(row) + step_ / 2));
            const Point next = Rounded(view.OnPage(U(end) - step_ / 2, V(row) - step_ / 2));
            svg.Square(corner, next.x - corner.x, next.y - corner.y, legend[line[column]].colour);
        }
    }
    svg.EndGroup();
}

void PlaneMap::DrawLegend(Svg& svg, Point at, const std::vector<LegendEntry>& legend,
                          const std::vector<std::string>& notes) const
{
    constexpr double kSwatch = 14.0;
    svg.BeginGroup("legend");
    svg.Text({at.x + kLegendWidth - 30.0, at.y}, "targets", {11.0, Anchor::kEnd, colour::kGrey});
    double y = at.y + 8.0;
    // Best first.
    for (std::size_t i = legend.size(); i-- > 0;) {
        const std::size_t count = CountOf(static_cast<MapClass>(i));
        if (legend[i].onlyIfUsed && count == 0) continue;
        const Point box[] = {
            {at.x, y}, {at.x + kSwatch, y}, {at.x + kSwatch, y + kSwatch}, {at.x, y + kSwatch}};
        svg.Polygon(box, legend[i].colour, {colour::kGrey, 0.6});
        svg.Text({at.x + kSwatch + 8.0, y + 11.5}, legend[i].text);
        svg.Text({at.x + kLegendWidth - 30.0, y + 11.5}, std::to_string(count),
                 {12.0, Anchor::kEnd, colour::kGrey});
        y += kLegendLine;
    }
    svg.EndGroup();
    y += 12.0;
    for (const std::string& note : notes) {
        for (const std::string& line : Wrapped(note)) {
            svg.Text({at.x, y}, line, {kNoteSize, Anchor::kStart, colour::kGrey});
            y += 16.0;
        }
        y += 6.0;
    }
}

std::string PlaneMap::Draw(const std::string& title, const std::vector<LegendEntry>& legend,
                           const std::vector<std::string>& notes, const Mark* mark) const
{
    const Bounds shown = Shown();
    const double scale = kMapSide / std::max(shown.Width(), shown.Height());
    const double width = shown.Width() * scale;
    const double height = shown.Height() * scale;
    const std::string heading = TitleOf(targets_.cell) + ", " + title;
    Svg svg(kLeft + width + 28.0 + kLegendWidth, kTop + std::max(height, kLeastHeight) + kBelow, heading);
    DrawHeading(svg, heading, Conditions());
    const View view(sight_, shown, {kLeft, kTop}, scale);
    view.DrawAxes(svg);
    DrawCells(svg, view, legend);
    view.DrawBorder(svg);
    DrawSilhouette(svg, view, scene_);
    if (mark) {
        const Point at = view.OnPage(U(mark->column), V(mark->row));
        svg.BeginGroup("mark");
        svg.Circle(at, 6.0, colour::kNone, {colour::kWhite, 3.6});
        svg.Circle(at, 6.0, colour::kNone, {colour::kInk, 1.6});
        Labels labels(view);
        AvoidArm(labels, view, scene_.arm);
        labels.Place(svg, at, mark->text, {12.0, Anchor::kStart, colour::kInk, true});
        svg.EndGroup();
    }
    DrawLegend(svg, {kLeft + width + 28.0, kTop + 6.0}, legend, notes);
    return svg.Document();
}

}  // namespace kine_cli
