// Frame services. U: transform of a mechanical unit, world from its last axis.
#include "chain/frame_services.h"

namespace kine {

namespace {

// A mechanical unit that can be used, with the values of its axes taken from a record's external axes.
struct UnitPosition
{
    const MechUnitSlot* unit;
    double axis1;  // deg or mm
    double axis2;  // deg, two rotary axes only
};

bool IsKnownKind(std::int32_t kind)
{
    return kind == kOneLinearAxis || kind == kOneRotaryAxis || kind == kTwoRotaryAxes;
}

// False for a unit that is not there, of no known kind, or without an external axis for each axis it needs.
bool FindUnitPosition(const MechUnitBlock& units, std::int32_t index, const std::array<double, 6>& extAxis,
                      UnitPosition& position)
{
    const MechUnitSlot* unit = FindUnit(units, index);
    if (unit == nullptr || !IsKnownKind(unit->unitKind)) return false;
    position = {unit, 0.0, 0.0};

    const std::optional<std::size_t> first = DrivingExtAxis(*unit, 0);
    if (!first) return false;
    position.axis1 = extAxis[*first];

    if (unit->unitKind != kTwoRotaryAxes) return true;
    const std::optional<std::size_t> second = DrivingExtAxis(*unit, 1);
    if (!second) return false;
    position.axis2 = extAxis[*second];
    return true;
}

HomMatrix UnitTransform(const UnitPosition& position)
{
    const auto& frames = position.unit->axisFrame;
    if (position.unit->unitKind == kOneLinearAxis) {
        // The travel takes its rotation from the second axis frame, whose position is not used.
        return frames[0] * HomMatrix{frames[1].r, MatrixTransX(position.axis1).t};
    }
    const HomMatrix firstAxis = frames[0] * MatrixRotZDeg(position.axis1);
    if (position.unit->unitKind == kOneRotaryAxis) return firstAxis;
    return firstAxis * (frames[1] * MatrixRotZDeg(position.axis2));
}

// A product with the zero frame changes nothing, but for numbers that are not finite: those spread.
bool IsProductNeeded(const LazyPose& frame, const LazyPose& pose)
{
    return !frame.IsZero() || !pose.IsFiniteMatrix();
}

bool IsAtOrigin(const HomMatrix& axisFrame)
{
    return axisFrame.t.x == 0.0 && axisFrame.t.y == 0.0 && axisFrame.t.z == 0.0;
}

// A linear axis may stand at the origin.
bool HasRotaryAxisAtOrigin(const MechUnitSlot& unit)
{
    if (unit.unitKind == kOneLinearAxis) return false;
    if (IsAtOrigin(unit.axisFrame[0])) return true;
    return unit.unitKind == kTwoRotaryAxes && IsAtOrigin(unit.axisFrame[1]);
}

}  // namespace

KineResult CheckHold(const Tool& tool, const Wobj& wobj)
{
    return IsHoldConflict(tool, wobj) ? KINE_ERR_HOLD_CONFLICT : KINE_OK;
}

KineResult FrameOnFlange(const Tool& tool, const Wobj& wobj, Pose& frame)
{
    if (IsHeld(tool)) {
        frame = tool.frame;
        return KINE_OK;
    }
    if (!IsHeld(wobj)) return KINE_ERR_CHAIN_1;
    frame = CombinedFrame(wobj).AsPose();
    return KINE_OK;
}

KineResult CheckedFrameOnFlange(const Tool& tool, const Wobj& wobj, Pose& frame)
{
    if (const KineResult code = CheckHold(tool, wobj)) return code;
    return FrameOnFlange(tool, wobj, frame);
}

KineResult MakeFrameDescriptor(const Tool& tool, const Wobj& wobj, FrameDescriptor& descriptor)
{
    if (const KineResult code = CheckHold(tool, wobj)) return code;
    return DescribeObjectInCell(tool, wobj, descriptor);
}

KineResult DescribeObjectInCell(const Tool& tool, const Wobj& wobj, FrameDescriptor& descriptor)
{
    if (!IsHeld(wobj)) {
        descriptor = {wobj.userFixed == 1 ? kFixedInWorld : kOnMechUnit, wobj.mechUnit, CombinedFrame(wobj)};
        return KINE_OK;
    }
    if (IsHeld(tool)) return KINE_ERR_CHAIN_2;
    // Every tool that comes through an export is fixed in the world. The other branch keeps tools and work
    // objects described by the same rule.
    descriptor = {tool.fixedInWorld == 1 ? kFixedInWorld : kOnMechUnit, tool.unit, tool.frame};
    return KINE_OK;
}

KineResult FrameToWorld(const MechUnitBlock& units, const FrameDescriptor& descriptor, PoseRecord& record)
{
    if (descriptor.mode == kFixedInWorld) {
        if (IsProductNeeded(descriptor.frame, record.frame))
            record.frame = LazyPose(descriptor.frame.AsMatrix() * record.frame.AsMatrix());
        return KINE_OK;
    }
    if (descriptor.mode != kOnMechUnit) return KINE_ERR_F2W_MODE;

    UnitPosition position{};
    if (!FindUnitPosition(units, descriptor.unit, record.extAxis, position)) return KINE_ERR_F2W_UNIT_KIND;
    record.frame = LazyPose(UnitTransform(position) * descriptor.frame.AsMatrix() * record.frame.AsMatrix());
    return KINE_OK;
}

KineResult WorldToFrame(const MechUnitBlock& units, const FrameDescriptor& descriptor, PoseRecord& record)
{
    if (descriptor.mode == kFixedInWorld) {
        if (IsProductNeeded(descriptor.frame, record.frame))
            record.frame = LazyPose(MatrixInverse(descriptor.frame.AsMatrix()) * record.frame.AsMatrix());
        return KINE_OK;
    }
    if (descriptor.mode != kOnMechUnit) return KINE_ERR_W2F_MODE;

    UnitPosition position{};
    if (!FindUnitPosition(units, descriptor.unit, record.extAxis, position)) return KINE_ERR_W2F_UNIT_KIND;
    if (HasRotaryAxisAtOrigin(*position.unit)) return KINE_ERR_AXIS_ORIGIN;
    record.frame = LazyPose(MatrixInverse(descriptor.frame.AsMatrix()) *
                            MatrixInverse(UnitTransform(position)) * record.frame.AsMatrix());
    return KINE_OK;
}

void InvertFrame(PoseRecord& record) { record.frame = LazyPose(MatrixInverse(record.frame.AsMatrix())); }

KineResult ToolRelativePose(const Tool& tool, const Wobj& wobj, PoseRecord& record)
{
    if (IsHoldConflict(tool, wobj)) return KINE_ERR_CHAIN_3;
    if (!IsHeld(tool)) InvertFrame(record);
    return KINE_OK;
}

}  // namespace kine
