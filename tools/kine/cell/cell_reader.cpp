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
#include "cell/record_reader.h"
#include "failure.h"
#include "text/numbers.h"
#include "text/quoted.h"

namespace kine_cli {
namespace {

constexpr std::size_t kLargestFile = std::size_t{16} << 20U;
constexpr std::size_t kLargestCell = std::size_t{1} << 20U;
constexpr std::size_t kMostUnits =
    8;  // more than the library takes, so that a wrong count can be written down
constexpr std::int64_t kLargestByte = 255;  // an index as wide as in the library's records
constexpr double kOpenLimit = 999.0;        // the library's own, deg
constexpr double kUsualWithinMm = 1e-3;
constexpr double kUsualWithinDeg = 1e-3;

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
        const JsonValue* given = in.Find("type");
        if (given && given->kind == JsonValue::Kind::kNumber) in.Fault("type", "should be 4, 6 or 4110");
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
    // How what rides on a linear axis is turned against it; the library keeps it in the frame of a second
    // axis.
    if (unit.record.UnitKind == 1 && in.Find("carried_frame"))
        unit.record.AxisFrame[1] = ReadFrameAt(in, "carried_frame");
    in.RefuseTheRest();
    cell.units.push_back(unit);
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
        if (member.key == kNone || member.key.empty() || HasControls(member.key) ||
            member.key.find_first_of("\"@,;") != std::string::npos) {
            cellIn.AllFindings().Fault(
                path, member.position,
                "is no name for it: not empty, not \"none\", and without @ , ; \" and control characters");
        }
        list.push_back({member.key, read(member.value, path)});
    }
}

Selection ReadSelection(ObjectReader& in, const Cell& cell, const Selection& otherwise)
{
    Selection selection = otherwise;
    const auto choose = [&](std::string_view key, const auto& list, std::string& name) {
        const JsonValue* value = in.Find(key);
        if (!value) return;
        name = in.Text(key);
        if (value->kind == JsonValue::Kind::kString && !Find(list, name))
            in.Fault(key, Quoted(name) + " is not in this cell");
    };
    choose("tool", cell.tools, selection.tool);
    choose("work_object", cell.workObjects, selection.workObject);
    choose("load", cell.loads, selection.load);
    return selection;
}

double ReadTolerance(ObjectReader& in, std::string_view key, double otherwise)
{
    const double tolerance = in.Number(key, otherwise);
    if (tolerance < 0.0) in.Fault(key, "should not be negative");
    return tolerance;
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
                in.Fault("joints", Quoted(joints->text) + " is not in this cell");
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
    const JsonValue* code = in.Find("code");
    if (code) {
        constexpr std::size_t kCodeLength = 6;
        expectation.code = ParseHexCode(code->text);
        if (code->text.size() != kCodeLength || !expectation.code)
            in.Fault("code", "should be a result code such as \"0x6012\"");
    }
    if ((frame != nullptr) == (code != nullptr)) in.Fault("should have either \"frame\" or \"code\"");
    expectation.withinMm = ReadTolerance(in, "within_mm", kUsualWithinMm);
    expectation.withinDeg = ReadTolerance(in, "within_deg", kUsualWithinDeg);
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
    if (text.size() > kLargestCell) FailFile(file + ":1:1: larger than 1 MiB; no cell is");
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
