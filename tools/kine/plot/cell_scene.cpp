#include "plot/cell_scene.h"

#include <algorithm>
#include <cmath>

#include "library/codes.h"

namespace kine_cli {
namespace {

// mm from the world; what is farther away is a slip, and its picture would show nothing.
constexpr double kFarthest = 1e7;
// How far the rail of a track without a travel goes on beyond the carriage.
constexpr double kRailBeyond = 300.0;

// Axes that a unit of each kind needs: 1 linear, 2 rotary, 3 two rotary.
std::size_t AxesOfKind(const KineMechUnit& unit) { return unit.UnitKind == 3 ? 2 : 1; }

std::optional<UnitShape> PlaceUnit(const Cell& cell, const Named<KineMechUnit>& unit, const KineJoint& joints)
{
    const KineMechUnit& record = unit.record;
    const std::size_t needed = AxesOfKind(record);
    if (record.AxisCount < needed) return std::nullopt;
    UnitShape shape;
    shape.name = unit.name;
    shape.isLinear = record.UnitKind == 1;
    for (std::size_t i = 0; i < needed; ++i) {
        const std::size_t index = record.AxisParamIndex[i];
        if (index >= kExternalAxes) return std::nullopt;
        const double value = joints.ExtAxis[index];
        const Transform axis = shape.last * FromFrame(record.AxisFrame[i]);
        shape.axes.push_back(axis);
        if (!shape.isLinear) {
            shape.last = axis * TurnZ(value);
            continue;
        }
        // The second frame of a linear unit gives only its rotation.
        shape.last = axis * Move({value, 0.0, 0.0}) * RotationOf(FromFrame(record.AxisFrame[1]));
        const auto travel = index < cell.externalAxes.size() ? cell.externalAxes[index].travel : std::nullopt;
        shape.railStart = axis.At({travel ? travel->first : std::min(0.0, value) - kRailBeyond, 0.0, 0.0});
        shape.railEnd = axis.At({travel ? travel->second : std::max(0.0, value) + kRailBeyond, 0.0, 0.0});
    }
    return shape;
}

Transform WorkObjectOf(const CellScene& scene, const KineWobj& wobj, const Transform& unit)
{
    // Unless the user frame is fixed it is the frame that carries it.
    const Transform user = wobj.UFFix == 1 ? FromFrame(wobj.UFrame) : Transform{};
    const Transform carrier = wobj.HeldByRobot != 0 ? scene.arm.flange : wobj.UFFix == 1 ? Transform{} : unit;
    return carrier * user * FromFrame(wobj.OFrame);
}

bool IsNear(const Vec3& point) { return Length(point) < kFarthest; }

void RequireNear(const CellScene& scene)
{
    bool isNear = IsNear(scene.tool.origin) && IsNear(scene.workObject.origin);
    for (const Vec3& point : scene.arm.outline) isNear = isNear && IsNear(point);
    for (const UnitShape& unit : scene.units) {
        isNear = isNear && IsNear(unit.last.origin) && IsNear(unit.railStart) && IsNear(unit.railEnd);
    }
    if (!isNear)
        FailUsage("a part of the cell is 10 km or more from the origin of the world; no picture of that");
}

}  // namespace

KineJoint HomeOf(const Cell& cell)
{
    if (const KineJoint* home = Find(cell.joints, "home")) return *home;
    return cell.joints.empty() ? KineJoint{} : cell.joints.front().record;
}

void FailRefused(const std::string& what, KineResult code, PrintedLines& printed)
{
    std::string lines = AsUtf8(printed.Take());
    while (!lines.empty() && lines.back() == '\n') lines.pop_back();
    throw Failure(ExitCode::kRefused,
                  "kine: " + what + ": " + InWords(code) + (lines.empty() ? "" : "\n" + lines));
}

CellScene PlaceCell(const ReadyCell& ready, const Selection& selection, const KineJoint& joints,
                    PrintedLines& printed)
{
    const Cell& cell = ready.cell;
    KinePose pose{};
    const KineResult code = JointsToPose(joints, ready.records, Reference::kWorkObject, pose);
    if (code != KINE_OK) FailRefused("the joints", code, printed);

    CellScene scene;
    Transform base;
    Transform carrier;
    for (std::size_t i = 0; i < cell.units.size(); ++i) {
        std::optional<UnitShape> unit = PlaceUnit(cell, cell.units[i], joints);
        if (!unit) continue;
        unit->index = i;
        unit->carriesRobot = cell.carrier && static_cast<std::size_t>(*cell.carrier) == i;
        scene.units.push_back(*unit);
        if (unit->carriesRobot) {
            base = unit->last;
            scene.baseIsCarried = true;
        }
        if (ready.records.wobj.MechUnitIndex == static_cast<int>(i)) carrier = unit->last;
    }
    scene.arm = Placed(base, ArmInBase(cell, joints));
    const KineTool& tool = ready.records.tool;
    scene.toolIsHeld = tool.HeldByRobot != 0;
    KineFrame toolFrame = tool.TFrame;
    if (!cell.IsSixAxis()) toolFrame.B = toolFrame.C = 0.0;  // these arms have a heading only
    scene.tool = (scene.toolIsHeld ? scene.arm.flange : Transform{}) * FromFrame(toolFrame);
    scene.workObject = WorkObjectOf(scene, ready.records.wobj, carrier);
    scene.toolName = selection.tool.empty() ? cell.use.tool : selection.tool;
    scene.workObjectName = selection.workObject.empty() ? cell.use.workObject : selection.workObject;
    RequireNear(scene);
    return scene;
}

}  // namespace kine_cli
