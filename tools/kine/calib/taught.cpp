#include "calib/taught.h"

#include <algorithm>

#include "library/codes.h"

namespace kine_cli {
namespace {

// Every group of points is solved again with one left out; so many points are still solved at once.
constexpr std::size_t kMostPoints = 20;

std::string InWords(Teach teach)
{
    switch (teach) {
        case Teach::kFlange: return "the flange in the base";
        case Teach::kFlangeInWorld: return "the flange in the world";
        case Teach::kTipInWorld: return "the tip of the tool in the world";
        case Teach::kTipInBase: return "the tip of the tool in the base";
        case Teach::kStationaryTipInFlange: return "the tip of the stationary tool in the flange";
    }
    return "";
}

// The tool and the load as they hang on the arm while the points are touched.
CellRecords RecordsFor(const ReadyCell& ready, Teach teach)
{
    CellRecords records = ready.records;
    const bool isHeld = records.tool.HeldByRobot != 0;
    if (isHeld == (teach == Teach::kStationaryTipInFlange)) {
        FailUsage(isHeld ? "the points of a held work object are touched with a stationary tool; choose one "
                           "with --tool"
                         : "the points are touched with a tool on the robot, and the chosen one is "
                           "stationary; choose another with --tool");
    }
    Vec3 carried;  // from the flange to where the payload is counted from
    if (teach == Teach::kStationaryTipInFlange) {
        if (records.wobj.HeldByRobot != 0) {
            KinePose user{};
            user.Frame = records.wobj.UFrame;
            carried = Turn(RotationOf(user.Frame), PositionOf(records.wobj.OFrame)) + PositionOf(user.Frame);
        }
        records.wobj = KineWobj{};
        records.wobj.HeldByRobot = 1;
    } else {
        if (teach == Teach::kFlange || teach == Teach::kFlangeInWorld) {
            carried = PositionOf(records.tool.TFrame);
            records.tool.TFrame = KineFrame{};
        }
        records.wobj = KineWobj{};
    }
    records.wobj.UFFix = 1;
    // The frame that the flange carries is zero here; the payload stays where it hangs.
    records.load.Cog[0] += carried.x;
    records.load.Cog[1] += carried.y;
    records.load.Cog[2] += carried.z;
    return records;
}

// Whether the unit under the robot stands elsewhere in another point.
bool IsRiding(const Cell& cell, const Poses& poses)
{
    if (!cell.carrier) return false;
    const auto index = static_cast<std::size_t>(*cell.carrier);
    if (index >= cell.units.size()) return false;
    const KineMechUnit& unit = cell.units[index].record;
    for (std::size_t axis = 0; axis < std::min<std::size_t>(unit.AxisCount, kExternalAxes); ++axis) {
        const std::size_t driver = unit.AxisParamIndex[axis];
        if (driver >= kExternalAxes) continue;
        for (const KinePose& pose : poses) {
            if (pose.ExtAxis[driver] != poses.front().ExtAxis[driver]) return true;
        }
    }
    return false;
}

Reference ReferenceOf(Teach teach)
{
    if (teach == Teach::kStationaryTipInFlange) return Reference::kFlange;
    return teach == Teach::kFlange || teach == Teach::kTipInBase ? Reference::kBase : Reference::kWorld;
}

std::string CallOf(Teach teach)
{
    switch (ReferenceOf(teach)) {
        case Reference::kFlange: return "Kine_JointToFlangePos";
        case Reference::kBase: return "Kine_JointToBasePos";
        default: return "Kine_JointToWorldPos";
    }
}

// Whether the names of the command line are joints or poses; a file says it in its header.
Shape ShapeOf(const Cell& cell, const TargetSource& source)
{
    if (source.arguments.empty() || !source.arguments.front().starts_with('@')) return Shape::kEither;
    return Find(cell.joints, source.arguments.front().substr(1)) ? Shape::kJoints : Shape::kPoses;
}

}  // namespace

void FailPoints(const TargetSource& source, const std::string& text)
{
    if (!source.arguments.empty()) FailUsage(text);
    FailFile((source.file.empty() || source.file == "-" ? "standard input" : source.file) + ": " + text);
}

Taught ReadTaught(const ReadyCell& ready, const TargetSource& source)
{
    Shape shape = ShapeOf(ready.cell, source);
    const std::vector<StoredTarget> targets = ReadTargets(shape, ready.widths, &ready.cell, source);
    if (targets.empty()) FailPoints(source, "there are no points");
    if (targets.size() > kMostPoints) {
        FailPoints(source, "there are " + std::to_string(targets.size()) + " points; give at most " +
                               std::to_string(kMostPoints));
    }
    Taught taught;
    taught.areJoints = shape == Shape::kJoints;
    taught.of = "poses as given";
    for (const StoredTarget& stored : targets) {
        const Target& target = stored.target;
        if (target.refusedBefore != KINE_OK) {
            FailPoints(source, "point " + stored.name + " was refused before with " +
                                   InWords(target.refusedBefore) + " and has no numbers");
        }
        taught.names.push_back(stored.name);
        taught.joints.push_back(target.joints);
        taught.poses.push_back(target.pose);
        if (taught.areJoints) {
            std::copy(std::begin(target.joints.ExtAxis), std::end(target.joints.ExtAxis),
                      std::begin(taught.poses.back().ExtAxis));
        }
    }
    return taught;
}

void FindPoses(const ReadyCell& ready, Teach teach, Taught& taught, PrintedLines& printed)
{
    if (!taught.areJoints) return;
    if (teach == Teach::kFlange && IsRiding(ready.cell, taught.poses)) teach = Teach::kFlangeInWorld;
    taught.of = InWords(teach);
    const CellRecords records = RecordsFor(ready, teach);
    for (std::size_t i = 0; i < taught.poses.size(); ++i) {
        taught.code = JointsToPose(taught.joints[i], records, ReferenceOf(teach), taught.poses[i]);
        if (taught.code == KINE_OK) continue;
        taught.call = CallOf(teach);
        taught.refused = i;
        taught.lines = printed.Take();
        return;
    }
}

}  // namespace kine_cli
