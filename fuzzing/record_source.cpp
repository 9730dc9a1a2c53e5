// Arguments out of bytes.
#include "record_source.h"

#include <cmath>
#include <limits>

#include "support/nasty_numbers.h"
#include "support/sample_arms.h"

namespace kine::fuzz {

namespace {

using test::kNastyNumbers;

// Parts of a degree and of a millimetre. Angles reach a little beyond +-180, axes beyond a turn.
constexpr double kAngleParts = 180.0;
constexpr double kAxisParts = 64.0;
constexpr double kLengthParts = 8.0;

// Numbers of which each costs a bit, and two bytes where it is not zero.
template <std::size_t n>
void FillSparse(ByteSource& source, double (&numbers)[n], double parts)
{
    static_assert(n <= 8);
    const unsigned present = source.Byte();
    for (std::size_t i = 0; i < n; ++i) numbers[i] = (present >> i & 1U) != 0 ? source.Parts(parts) : 0.0;
}

KineFrame SaneFrame(ByteSource& source)
{
    const unsigned present = source.Byte();
    const auto take = [&](unsigned bit, double parts) {
        return (present >> bit & 1U) != 0 ? source.Parts(parts) : 0.0;
    };
    // One after the other: the order of arguments is not defined.
    KineFrame frame{};
    frame.X = take(0, kLengthParts);
    frame.Y = take(1, kLengthParts);
    frame.Z = take(2, kLengthParts);
    frame.A = take(3, kAngleParts);
    frame.B = take(4, kAngleParts);
    frame.C = take(5, kAngleParts);
    return frame;
}

KineJoint SaneJoints(ByteSource& source)
{
    KineJoint joints{};
    FillSparse(source, joints.Axis, kAxisParts);
    FillSparse(source, joints.ExtAxis, kAxisParts);
    return joints;
}

// Mostly small; else where a sign, a width or a limit ends; else any.
std::int32_t Integer(ByteSource& source)
{
    constexpr std::int32_t kMax = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t kIntegers[16] = {4,  6,   4110, 6,     4,       4110,    kMax,     kMin,
                                            -1, 255, 256,  65536, 1000000, 1000001, -1000000, -1000001};
    const std::uint8_t choice = source.Byte();
    if (choice < 160) return (choice & 15) - 4;
    if (choice < 240) return kIntegers[choice & 15];
    return source.Raw<std::int32_t>();
}

// A posture alone, as for the six-axis arm; one with a turn, as for the four-axis arms; or four
// numbers, small or any.
void FillConfig(ByteSource& source, KinePose& pose)
{
    const std::uint8_t choice = source.Byte();
    if (choice < 128) {
        pose.Cfg4 = choice & 7;
    } else if (choice < 192) {
        pose.Cfg1 = (choice & 1) != 0 ? 1 : -1;
        pose.Cfg4 = (choice >> 1 & 7) - 4;
    } else {
        for (std::int32_t* number : {&pose.Cfg1, &pose.Cfg2, &pose.Cfg3, &pose.Cfg4})
            *number = choice < 240 ? source.Raw<std::int8_t>() : Integer(source);
    }
}

KinePose SanePose(ByteSource& source)
{
    KinePose pose{};
    pose.Frame = SaneFrame(source);
    FillConfig(source, pose);
    FillSparse(source, pose.ExtAxis, kAxisParts);
    return pose;
}

KineLoad SaneLoad(ByteSource& source)
{
    KineLoad load{};
    const std::uint8_t mass = source.Byte();
    if (mass == 0) return load;
    load.Mass = mass / 8.0;
    FillSparse(source, load.Cog, kLengthParts);
    return load;
}

// Mostly 1 or 0.
std::uint8_t HeldByte(std::uint8_t choice)
{
    if (choice < 160) return 1;
    return choice < 240 ? 0 : choice;
}

KineTool SaneTool(ByteSource& source)
{
    KineTool tool{};
    tool.HeldByRobot = HeldByte(source.Byte());
    tool.TFrame = SaneFrame(source);
    tool.TLoad = SaneLoad(source);
    return tool;
}

// Mostly held when the tool is not.
KineWobj SaneWobj(ByteSource& source, bool isToolHeld)
{
    KineWobj wobj{};
    const std::uint8_t choice = source.Byte();
    wobj.HeldByRobot = (choice & 15) < 12 ? (isToolHeld ? 0 : 1) : HeldByte(source.Byte());
    wobj.UFFix = (choice >> 4 & 3) != 0 ? 1 : 0;
    wobj.MechUnitIndex = static_cast<std::int8_t>((choice >> 6) + (wobj.UFFix == 0 ? 0 : -1));
    wobj.UFrame = SaneFrame(source);
    wobj.OFrame = SaneFrame(source);
    return wobj;
}

KineMechUnit SaneUnit(ByteSource& source)
{
    KineMechUnit unit{};
    const std::uint8_t choice = source.Byte();
    unit.Active = 1;
    unit.UnitKind = choice & 3;
    unit.AxisCount = unit.UnitKind == 3 ? 2 : 1;
    unit.Option1 = choice >> 2 & 1;
    unit.Option2 = choice >> 3 & 3;
    for (std::size_t axis = 0; axis < 2; ++axis) {
        unit.AxisParamIndex[axis] = source.Byte() & 7;
        unit.AxisFrame[axis] = SaneFrame(source);
    }
    return unit;
}

KineExtAxisParam SaneExtAxis(ByteSource& source)
{
    KineExtAxisParam param{};
    param.Word[3] = source.Byte() & 3;
    return param;
}

// Two bits per slot: nothing, forth, back, twice.
KineInchDir SaneDirections(ByteSource& source)
{
    constexpr std::int32_t kDirections[4] = {0, 1, -1, 2};
    KineInchDir directions{};
    const auto bits = source.Raw<std::uint32_t>();
    for (std::size_t i = 0; i < std::size(directions.Slot); ++i)
        directions.Slot[i] = kDirections[bits >> 2 * i & 3U];
    return directions;
}

double Number(ByteSource& source)
{
    const std::uint8_t choice = source.Byte();
    if (choice < std::size(kNastyNumbers)) return kNastyNumbers[choice];
    return choice < 240 ? source.Parts(kLengthParts) : source.Raw<double>();
}

// Overwrites one to four places.
void Spoil(ByteSource& source, Bytes& record)
{
    const std::uint8_t choice = source.Byte();
    for (unsigned n = 0; n <= (choice & 3U); ++n) {
        const std::uint8_t how = source.Byte();
        const std::size_t at = source.Byte();
        if (record.size < sizeof(double) || how >= 0xF0) {
            if (record.size > 0) record.data[at % record.size] = source.Byte();
            continue;
        }
        unsigned char* place = record.data.data() + 8 * (at % (record.size / 8));
        double value = 0.0;
        std::memcpy(&value, place, sizeof value);
        if (how < 0x80) {
            value = kNastyNumbers[how % std::size(kNastyNumbers)];
        } else if (how < 0xA0) {
            // A little more or less: thresholds.
            value += std::ldexp(1.0, -(how & 31) - 2) * source.Raw<std::int8_t>();
        } else if (how < 0xB0) {
            value = how % 2 == 0 ? test::JustBelow(value) : test::JustAbove(value);
        } else if (how < 0xC0) {
            value = -value;
        } else if (how < 0xE0) {
            value = source.Raw<double>();
        } else {
            const auto word = source.Raw<std::uint32_t>();
            std::memcpy(place + 4 * (how & 1U), &word, sizeof word);
            continue;
        }
        std::memcpy(place, &value, sizeof value);
    }
}

Place TakePlace(ByteSource& source, unsigned choice)
{
    if (choice < 4) return {Place::Side::kEnd, 0};
    if (choice < 6) return {Place::Side::kStart, 0};
    return {Place::Side::kOdd, 1 + source.Byte() % 7U};
}

}  // namespace

SampleArm SampleArmOf(std::size_t number)
{
    switch (number % kSampleArms) {
        case 0: return {KINE_ARM_SIX_AXIS, test::WristArm()};
        case 1: return {KINE_ARM_SIX_AXIS, test::CalibratedWristArm()};
        case 2: return {KINE_ARM_SIX_AXIS, test::PumaWithGravity()};
        case 3: return {KINE_ARM_FOUR_AXIS, test::Scara()};
        case 4: return {KINE_ARM_FOUR_AXIS, test::TiltedScara()};
        case 5: return {KINE_ARM_FOUR_AXIS_4110, test::Scara()};
        default: return {KINE_ARM_FOUR_AXIS_4110, test::TiltedScara()};
    }
}

std::size_t ArmViewSize(std::int32_t armType)
{
    if (armType == 6) return sizeof(KineSixAxisParam);
    if (armType == 4 || armType == 4110) return sizeof(KineFourAxisParam);
    return 0;
}

void RecordSource::Remember(Kind kind, const Bytes& record)
{
    Pool& pool = pools_[static_cast<std::size_t>(kind)];
    pool.records[pool.count % pool.records.size()] = record;
    ++pool.count;
}

const Bytes* RecordSource::Recall(Kind kind, std::size_t back) const
{
    const Pool& pool = pools_[static_cast<std::size_t>(kind)];
    const std::size_t kept = std::min(pool.count, pool.records.size());
    if (kept == 0) return nullptr;
    return &pool.records[(pool.count - 1 - back % kept) % pool.records.size()];
}

Bytes RecordSource::Sane(ByteSource& source, const Call& call, Kind kind)
{
    switch (kind) {
        case Kind::kArm: {
            // One of the arm type asked for, when there is one.
            std::size_t number = source.Byte();
            const auto type = static_cast<std::uint32_t>(call.arguments[0].value.integer);
            for (std::size_t n = 0; n < kSampleArms && SampleArmOf(number).type != type; ++n) ++number;
            return Bytes::Of(SampleArmOf(number).param);
        }
        case Kind::kJoint: return Bytes::Of(SaneJoints(source));
        case Kind::kPose: return Bytes::Of(SanePose(source));
        case Kind::kFrame: return Bytes::Of(SaneFrame(source));
        case Kind::kTool: {
            const KineTool tool = SaneTool(source);
            isToolHeld_ = tool.HeldByRobot != 0;
            return Bytes::Of(tool);
        }
        case Kind::kWobj: return Bytes::Of(SaneWobj(source, isToolHeld_));
        case Kind::kLoad: return Bytes::Of(SaneLoad(source));
        case Kind::kUnit: return Bytes::Of(SaneUnit(source));
        case Kind::kExtAxis: return Bytes::Of(SaneExtAxis(source));
        case Kind::kDirections: return Bytes::Of(SaneDirections(source));
        case Kind::kVector:
        case Kind::kSteps: {
            std::array<double, 3> numbers{};
            for (double& number : numbers) number = source.Parts(kAxisParts);
            return Bytes::Of(numbers);
        }
        default: return {};
    }
}

void RecordSource::TakeRecord(ByteSource& source, Call& call, std::size_t i)
{
    const auto [kind, role, isOptional] = call.function->params[i];
    CallArgument& argument = call.arguments[i];
    const std::uint8_t choice = source.Byte();
    const unsigned how = choice & 31U;
    argument.place = TakePlace(source, choice >> 5U);
    argument.isNull = how == 31 && (role != Role::kIn || source.Byte() % 4 == 0);

    const std::size_t size =
        kind == Kind::kArm ? ArmViewSize(call.arguments[0].value.integer) : InfoOf(kind).size;
    if (role == Role::kOut) {
        argument.bytes.size = size;
        return;
    }
    const Bytes* earlier = how >= 20 && how < 28 ? Recall(kind, how & 3U) : nullptr;
    if (earlier != nullptr) {
        argument.bytes = *earlier;
    } else if (how == 28 || how == 29) {
        source.Fill(argument.bytes.data.data(), size);
    } else {
        argument.bytes = Sane(source, call, kind);
    }
    argument.bytes.size = size;
    if ((how >= 16 && how < 20) || (how >= 24 && how < 28)) Spoil(source, argument.bytes);
    if (kind == Kind::kPose || kind == Kind::kJoint || kind == Kind::kTool || kind == Kind::kWobj)
        Remember(kind, argument.bytes);

    if (how != 30 || role != Role::kIn) return;
    for (std::size_t other = i; other-- > 0;) {
        if (call.function->params[other].kind != kind || call.arguments[other].isNull) continue;
        argument = call.arguments[other];
        if (argument.sameAs == kMaxParams) argument.sameAs = other;
        return;
    }
}

Call RecordSource::TakeCall(ByteSource& source, const Export& function)
{
    Call call;
    call.function = &function;
    for (std::size_t i = 0; i < function.paramCount; ++i) {
        switch (function.params[i].kind) {
            case Kind::kInteger: call.arguments[i].value.integer = Integer(source); break;
            case Kind::kNumber: call.arguments[i].value.number = Number(source); break;
            default: TakeRecord(source, call, i);
        }
    }
    const std::uint8_t overlay = source.Byte();
    if (overlay >= 128) {
        const std::size_t result = (overlay >> 3U & 7U) % function.paramCount;
        const std::size_t input = (overlay & 7U) % function.paramCount;
        const bool isPossible = function.params[result].role == Role::kOut &&
                                !call.arguments[result].isNull && function.params[input].role == Role::kIn &&
                                !call.arguments[input].isNull;
        if (isPossible) {
            call.overlaidResult = result;
            call.overlaidInput = input;
        }
    }
    return call;
}

}  // namespace kine::fuzz
