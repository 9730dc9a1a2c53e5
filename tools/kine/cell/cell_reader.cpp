#include "cell/cell_reader.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>
#include <span>

#include "cell/object_reader.h"
#include "failure.h"

namespace kine_cli {
namespace {

constexpr std::size_t kLargestFile = std::size_t{16} << 20U;
constexpr std::size_t kMostUnits =
    8;  // more than the library takes, so that a wrong count can be written down
constexpr std::int64_t kLargestByte = 255;  // an index as wide as in the library's records
constexpr double kOpenLimit = 999.0;        // the library's own, deg
constexpr double kUsualWithinMm = 1e-3;
constexpr double kUsualWithinDeg = 1e-3;

void ReadFrameFields(ObjectReader& in, KineFrame& frame)
{
    frame.X = in.Number("x_mm", 0.0);
    frame.Y = in.Number("y_mm", 0.0);
    frame.Z = in.Number("z_mm", 0.0);
    frame.A = in.Number("a_deg", 0.0);
    frame.B = in.Number("b_deg", 0.0);
    frame.C = in.Number("c_deg", 0.0);
}

KineFrame ReadFrame(const JsonValue& value, const std::string& path, Findings& findings)
{
    KineFrame frame{};
    ObjectReader in(value, path, findings);
    ReadFrameFields(in, frame);
    in.RefuseTheRest();
    return frame;
}

KineFrame ReadFrameAt(ObjectReader& in, std::string_view key)
{
    const JsonValue* value = in.Find(key);
    return value ? ReadFrame(*value, in.PathOf(key), in.AllFindings()) : KineFrame{};
}

void ReadSixAxisArm(ObjectReader& in, KineSixAxisParam& p)
{
    p.a1 = in.RequiredNumber("a1_mm");
    p.a2 = in.RequiredNumber("a2_mm");
    p.a3 = in.RequiredNumber("a3_mm");
    p.d1 = in.RequiredNumber("d1_mm");
    p.d4 = in.RequiredNumber("d4_mm");
    p.d6 = in.RequiredNumber("d6_mm");
    p.d3 = in.Number("d3_mm", 0.0);
    p.lateralOffset = in.Number("lateral_offset_mm", 0.0);
    p.d5 = in.Number("d5_mm", 0.0);
    p.a4 = in.Number("a4_mm", 0.0);
    p.a5 = in.Number("a5_mm", 0.0);
    p.beta2 = in.Number("beta2_deg", 0.0);
    std::array<double, 5> alpha = {90.0, 0.0, 90.0, -90.0, 90.0};
    in.Numbers("alpha_deg", alpha, alpha.size());
    p.alpha1 = alpha[0];
    p.alpha2 = alpha[1];
    p.alpha3 = alpha[2];
    p.alpha4 = alpha[3];
    p.alpha5 = alpha[4];
    p.mountX = in.Number("mount_x_deg", 0.0);
    p.mountY = in.Number("mount_y_deg", 0.0);
    in.Numbers("weights_Nmm", p.G, 1);
    p.k2 = in.Number("k2_Nm_per_rad", 0.0);
    p.k3 = in.Number("k3_Nm_per_rad", 0.0);
    p.k5 = in.Number("k5_Nm_per_rad", 0.0);
}

void ReadFourAxisArm(ObjectReader& in, KineFourAxisParam& p)
{
    p.Link1Length = in.RequiredNumber("link1_length_mm");
    p.Link2Length = in.RequiredNumber("link2_length_mm");
    p.ZOffset = in.RequiredNumber("z_offset_mm");
    p.ScrewLead = in.RequiredNumber("screw_lead_mm_per_turn");
    p.Link1TiltX = in.Number("link1_tilt_x_deg", 0.0);
    p.Link2TiltX = in.Number("link2_tilt_x_deg", 0.0);
    p.Link1TiltY = in.Number("link1_tilt_y_deg", 0.0);
    p.Link2TiltY = in.Number("link2_tilt_y_deg", 0.0);
}

void ReadArm(const JsonValue& value, Findings& findings, Cell& cell)
{
    ObjectReader in(value, "arm", findings);
    const double type = in.RequiredNumber("type");
    if (type == KINE_ARM_SIX_AXIS) {
        cell.armType = KINE_ARM_SIX_AXIS;
        ReadSixAxisArm(in, cell.param.SixAxis);
    } else if (type == KINE_ARM_FOUR_AXIS || type == KINE_ARM_FOUR_AXIS_4110) {
        cell.armType = static_cast<std::uint32_t>(type);
        ReadFourAxisArm(in, cell.param.FourAxis);
    } else {
        if (in.Find("type")) in.Fault("type", "should be 4, 6 or 4110");
        return;  // what the other keys should be depends on it
    }
    in.RefuseTheRest();
}

void ReadLimits(const JsonValue* value, Findings& findings, Cell& cell)
{
    std::fill(std::begin(cell.lower.Axis), std::end(cell.lower.Axis), -kOpenLimit);
    std::fill(std::begin(cell.upper.Axis), std::end(cell.upper.Axis), kOpenLimit);
    if (!value) return;
    ObjectReader in(*value, "limits", findings);
    const std::size_t axes = cell.AxisCount();
    for (const auto& [key, limits] :
         {std::pair{"lower_deg", cell.lower.Axis}, {"upper_deg", cell.upper.Axis}}) {
        if (in.Require(key)) in.Numbers(key, std::span(limits, axes), axes);
    }
    in.RefuseTheRest();
    cell.hasLimits = true;
}

// Calls read(value, path, index) for each entry of an array.
void ForEachItem(const JsonValue* value, const std::string& path, std::size_t most, Findings& findings,
                 const std::function<void(const JsonValue&, const std::string&)>& read)
{
    if (!value) return;
    if (value->kind != JsonValue::Kind::kArray) {
        findings.Fault(path, value->position,
                       "is " + std::string(KindInWords(value->kind)) + ", should be an array");
        return;
    }
    if (value->items.size() > most) {
        findings.Fault(path, value->position, "has more than " + std::to_string(most) + " entries");
        return;
    }
    for (std::size_t i = 0; i < value->items.size(); ++i)
        read(value->items[i], path + "[" + std::to_string(i) + "]");
}

void ReadExternalAxis(const JsonValue& value, const std::string& path, Findings& findings, Cell& cell)
{
    constexpr std::array<std::string_view, 2> kKinds = {"rotary", "linear"};
    ObjectReader in(value, path, findings);
    ExternalAxis axis;
    axis.name = in.Text("name");
    in.Require("kind");
    axis.linear = in.Word("kind", kKinds, 0) == 1;
    std::array<double, 2> travel{};
    if (in.Numbers(axis.linear ? "travel_mm" : "travel_deg", travel, travel.size())) {
        axis.travel = {travel[0], travel[1]};
    }
    in.RefuseTheRest();
    cell.externalAxes.push_back(axis);
}

void ReadUnit(const JsonValue& value, const std::string& path, Findings& findings, Cell& cell)
{
    constexpr std::array<std::string_view, 3> kKinds = {"linear", "rotary", "two-rotary"};
    ObjectReader in(value, path, findings);
    Named<KineMechUnit> unit;
    unit.name = in.Text("name");
    in.Require("kind");
    unit.record.Active = 1;
    unit.record.UnitKind = static_cast<std::uint16_t>(in.Word("kind", kKinds, 0) + 1);
    ForEachItem(in.Require("axes"), in.PathOf("axes"), kExternalAxes, findings,
                [&](const JsonValue& axis, const std::string& axisPath) {
                    ObjectReader axisIn(axis, axisPath, findings);
                    const std::uint8_t i = unit.record.AxisCount++;
                    axisIn.Require("external_axis");
                    unit.record.AxisParamIndex[i] =
                        static_cast<std::uint8_t>(axisIn.Integer("external_axis", 0, kLargestByte, 0));
                    unit.record.AxisFrame[i] = ReadFrameAt(axisIn, "frame");
                    axisIn.RefuseTheRest();
                });
    // How what rides on a linear axis is turned against it; the library keeps it in the frame of a second axis.
    if (unit.record.UnitKind == 1 && in.Find("carried_frame"))
        unit.record.AxisFrame[1] = ReadFrameAt(in, "carried_frame");
    in.RefuseTheRest();
    cell.units.push_back(unit);
}

KineLoad ReadLoad(const JsonValue& value, const std::string& path, Findings& findings)
{
    KineLoad load{};
    ObjectReader in(value, path, findings);
    load.Mass = in.Number("mass_kg", 0.0);
    in.Numbers("cog_mm", load.Cog, 3);
    in.Numbers("axes_of_moment_deg", load.Aom, 3);
    in.Numbers("inertia", load.Inertia, 3);
    in.RefuseTheRest();
    return load;
}

KineTool ReadTool(const JsonValue& value, const std::string& path, Findings& findings)
{
    KineTool tool{};
    ObjectReader in(value, path, findings);
    tool.HeldByRobot = in.Boolean("held_by_robot", true) ? 1 : 0;
    tool.TFrame = ReadFrameAt(in, "frame");
    if (const JsonValue* load = in.Find("load")) tool.TLoad = ReadLoad(*load, in.PathOf("load"), findings);
    in.RefuseTheRest();
    return tool;
}

KineWobj ReadWorkObject(const JsonValue& value, const std::string& path, Findings& findings)
{
    KineWobj wobj{};
    ObjectReader in(value, path, findings);
    wobj.HeldByRobot = in.Boolean("held_by_robot", false) ? 1 : 0;
    wobj.UFFix = in.Find("mechanical_unit") ? 0 : 1;
    wobj.MechUnitIndex = static_cast<std::int8_t>(in.Integer("mechanical_unit", -128, 127, 0));
    wobj.UFrame = ReadFrameAt(in, "user_frame");
    wobj.OFrame = ReadFrameAt(in, "object_frame");
    in.RefuseTheRest();
    return wobj;
}

void ReadExternalValues(ObjectReader& in, double (&values)[kExternalAxes])
{
    in.Numbers("external_mm_or_deg", values, 1);
}

KineJoint ReadJoints(const JsonValue& value, const std::string& path, Findings& findings, std::size_t axes)
{
    KineJoint joints{};
    ObjectReader in(value, path, findings);
    if (in.Require("axes_deg")) in.Numbers("axes_deg", std::span(joints.Axis, axes), axes);
    ReadExternalValues(in, joints.ExtAxis);
    in.RefuseTheRest();
    return joints;
}

PoseTarget ReadPose(const JsonValue& value, const std::string& path, Findings& findings)
{
    PoseTarget target;
    ObjectReader in(value, path, findings);
    ReadFrameFields(in, target.pose.Frame);
    std::array<double, 4> config{};
    if (in.Numbers("cfg", config, config.size())) {
        target.hasConfig = true;
        const std::array<std::int32_t*, 4> fields = {&target.pose.Cfg1, &target.pose.Cfg2, &target.pose.Cfg3,
                                                     &target.pose.Cfg4};
        for (std::size_t i = 0; i < config.size(); ++i) {
            if (config[i] != static_cast<double>(static_cast<std::int32_t>(
                                 std::clamp(config[i], -2147483648.0, 2147483647.0)))) {
                in.Fault("cfg", "should be whole numbers of 32 bits");
                break;
            }
            *fields[i] = static_cast<std::int32_t>(config[i]);
        }
    }
    ReadExternalValues(in, target.pose.ExtAxis);
    in.RefuseTheRest();
    return target;
}

// An object whose keys are names. `list` may hold entries that every cell has; their names are taken.
template <typename Record, typename Read>
void ReadNamed(ObjectReader& cellIn, std::string_view key, std::vector<Named<Record>>& list, const Read& read)
{
    const JsonValue* value = cellIn.Find(key);
    if (!value) return;
    const ObjectReader in(*value, std::string(key), cellIn.AllFindings());
    for (const JsonMember& member : value->members) {
        const std::string path = in.PathOf(member.key);
        if (member.key == kNone || member.key.empty() ||
            member.key.find_first_of("\"@,;\t\n\r") != std::string::npos) {
            cellIn.AllFindings().Fault(
                path, member.position,
                "is no name for it: not empty, not \"none\", and without @ , ; \" and tabs");
        }
        list.push_back({member.key, read(member.value, path)});
    }
}

Selection ReadSelection(ObjectReader& in, const Cell& cell, const Selection& otherwise)
{
    Selection selection = otherwise;
    const auto choose = [&](std::string_view key, const auto& list, std::string& name) {
        if (!in.Find(key)) return;
        name = in.Text(key);
        if (!Find(list, name)) in.Fault(key, "\"" + name + "\" is not in this cell");
    };
    choose("tool", cell.tools, selection.tool);
    choose("work_object", cell.workObjects, selection.workObject);
    choose("load", cell.loads, selection.load);
    return selection;
}

void ReadExpectation(const JsonValue& value, const std::string& path, Findings& findings, Cell& cell)
{
    constexpr std::array<std::string_view, 5> kReferences = {"base", "flange", "world", "work_object",
                                                             "vision"};
    ObjectReader in(value, path, findings);
    Expectation expectation;
    expectation.position = value.position;
    expectation.what = in.Text("what");
    expectation.source = in.Text("source");
    if (const JsonValue* joints = in.Require("joints")) {
        if (joints->kind == JsonValue::Kind::kString) {
            if (const KineJoint* named = Find(cell.joints, joints->text)) {
                expectation.joints = *named;
            } else {
                in.Fault("joints", "\"" + joints->text + "\" is not in this cell");
            }
        } else {
            expectation.joints = ReadJoints(*joints, in.PathOf("joints"), findings, cell.AxisCount());
        }
    }
    expectation.reference =
        static_cast<Reference>(in.Word("in", kReferences, static_cast<std::size_t>(Reference::kWorkObject)));
    expectation.selection = ReadSelection(in, cell, cell.use);
    const JsonValue* frame = in.Find("frame");
    if (frame) expectation.frame = ReadFrame(*frame, in.PathOf("frame"), findings);
    if (in.Find("code")) {
        const std::string code = in.Text("code");
        KineResult number = 0;
        if (code.size() == 6 && std::sscanf(code.c_str(), "0x%4X", &number) == 1) {
            expectation.code = number;
        } else {
            in.Fault("code", "should be a result code such as \"0x6012\"");
        }
    }
    if ((frame != nullptr) == expectation.code.has_value())
        in.Fault("", "should have either \"frame\" or \"code\"");
    expectation.withinMm = in.Number("within_mm", kUsualWithinMm);
    expectation.withinDeg = in.Number("within_deg", kUsualWithinDeg);
    in.RefuseTheRest();
    cell.expectations.push_back(expectation);
}

void ReadMechanics(ObjectReader& in, Findings& findings, Cell& cell)
{
    ForEachItem(in.Find("external_axes"), "external_axes", kExternalAxes + 2, findings,
                [&](const JsonValue& value, const std::string& path) {
                    ReadExternalAxis(value, path, findings, cell);
                });
    ForEachItem(
        in.Find("mechanical_units"), "mechanical_units", kMostUnits, findings,
        [&](const JsonValue& value, const std::string& path) { ReadUnit(value, path, findings, cell); });
    if (!in.Find("robot_on_unit")) return;
    const auto carrier = static_cast<std::uint8_t>(in.Integer("robot_on_unit", 0, kLargestByte, 0));
    cell.carrier = carrier;
    if (cell.units.empty()) {
        in.Fault("robot_on_unit", "needs \"mechanical_units\"");
        return;
    }
    cell.units[0].record.Option1 = 1;
    cell.units[0].record.Option2 = carrier;
}

void ReadCellFields(ObjectReader& in, Findings& findings, Cell& cell)
{
    in.Find("$schema");
    cell.name = in.Text("name");
    cell.about = in.Text("about");
    if (const JsonValue* arm = in.Require("arm")) ReadArm(*arm, findings, cell);
    if (cell.armType == 0) findings.Settle();
    ReadLimits(in.Find("limits"), findings, cell);
    ReadMechanics(in, findings, cell);

    KineTool bare{};
    bare.HeldByRobot = 1;
    KineWobj world{};
    world.UFFix = 1;
    cell.tools.push_back({std::string(kNone), bare});
    cell.workObjects.push_back({std::string(kNone), world});
    cell.loads.push_back({std::string(kNone), KineLoad{}});
    const auto with = [&](const auto& read) {
        return [&findings, read](const JsonValue& value, const std::string& path) {
            return read(value, path, findings);
        };
    };
    ReadNamed(in, "tools", cell.tools, with(ReadTool));
    ReadNamed(in, "work_objects", cell.workObjects, with(ReadWorkObject));
    ReadNamed(in, "loads", cell.loads, with(ReadLoad));
    ReadNamed(in, "joints", cell.joints, [&](const JsonValue& value, const std::string& path) {
        return ReadJoints(value, path, findings, cell.AxisCount());
    });
    ReadNamed(in, "poses", cell.poses, with(ReadPose));

    cell.use = {std::string(kNone), std::string(kNone), std::string(kNone)};
    if (const JsonValue* use = in.Find("use")) {
        ObjectReader useIn(*use, "use", findings);
        cell.use = ReadSelection(useIn, cell, cell.use);
        useIn.RefuseTheRest();
    }
    ForEachItem(in.Find("expect"), "expect", 1000, findings,
                [&](const JsonValue& value, const std::string& path) {
                    ReadExpectation(value, path, findings, cell);
                });
}

}  // namespace

Cell ParseCell(std::string_view text, const std::string& file)
{
    const JsonValue root = ParseJson(text, file);
    Cell cell;
    cell.file = file;
    Findings findings(cell);
    ObjectReader in(root, "", findings);
    if (!in.IsGiven()) findings.Settle();
    ReadCellFields(in, findings, cell);
    in.RefuseTheRest();
    findings.Settle();
    return cell;
}

std::string ReadTextFile(const std::string& file)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> stream(std::fopen(file.c_str(), "rbe"),
                                                                 &std::fclose);
    if (!stream) FailFile(file + ": " + std::strerror(errno));
    std::string text;
    std::array<char, 65536> block;  // NOLINT(cppcoreguidelines-pro-type-member-init): read below
    while (const std::size_t count = std::fread(block.data(), 1, block.size(), stream.get())) {
        text.append(block.data(), count);
        if (text.size() > kLargestFile) FailFile(file + ": larger than 16 MiB");
    }
    if (std::ferror(stream.get())) FailFile(file + ": " + std::strerror(errno));
    return text;
}

Cell ReadCell(const std::string& file) { return ParseCell(ReadTextFile(file), file); }

}  // namespace kine_cli
