// From the text of a cell to the records of the library, and every message about a wrong one.
#include "cell/cell_reader.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>

#include "failure_text.h"

namespace kine_cli {
namespace {

const std::string kArm =
    R"("arm": {"type": 6, "a1_mm": 1, "a2_mm": 2, "a3_mm": 3, "d1_mm": 4, "d4_mm": 5, "d6_mm": 6})";
const std::string kScara =
    R"("arm": {"type": 4, "link1_length_mm": 1, "link2_length_mm": 2, "z_offset_mm": 3, )"
    R"("screw_lead_mm_per_turn": 4})";

Cell Read(const std::string& text) { return ParseCell(text, "c.json"); }
std::string Says(const std::string& text)
{
    return FailureText([&] { Read(text); });
}
// A cell with an arm in its first line and this in the second.
std::string With(const std::string& rest) { return "{" + kArm + ",\n" + rest + "}"; }

void ExpectFrame(const KineFrame& frame, double x, double y, double z, double a, double b, double c)
{
    EXPECT_EQ(frame.X, x);
    EXPECT_EQ(frame.Y, y);
    EXPECT_EQ(frame.Z, z);
    EXPECT_EQ(frame.A, a);
    EXPECT_EQ(frame.B, b);
    EXPECT_EQ(frame.C, c);
}

// x_mm = first, y_mm = first + 1, ...
std::string FrameText(int first)
{
    std::string text = "{";
    for (const char* key : {"x_mm", "y_mm", "z_mm", "a_deg", "b_deg", "c_deg"})
        text += (text.size() > 1 ? ", \"" : "\"") + std::string(key) + "\": " + std::to_string(first++);
    return text + "}";
}
void ExpectFrame(const KineFrame& frame, int first)
{
    ExpectFrame(frame, first, first + 1, first + 2, first + 3, first + 4, first + 5);
}

TEST(ParseCell, each_key_of_a_six_axis_arm_lands_in_its_field)
{
    const Cell cell =
        Read(R"({"name": "N", "about": "A", "arm": {"type": 6, "a1_mm": 1, "a2_mm": 2, "a3_mm": 3, "d1_mm": 4,
        "d4_mm": 5, "d6_mm": 6, "d3_mm": 7, "lateral_offset_mm": 8, "d5_mm": 9, "a4_mm": 10, "a5_mm": 11,
        "beta2_deg": 12, "alpha_deg": [13, 14, 15, 16, 17], "mount_x_deg": 18, "mount_y_deg": 19,
        "weights_Nmm": [20, 21, 22, 23, 24, 25, 26], "k2_Nm_per_rad": 27, "k3_Nm_per_rad": 28,
        "k5_Nm_per_rad": 29}})");
    EXPECT_EQ(cell.name, "N");
    EXPECT_EQ(cell.about, "A");
    EXPECT_EQ(cell.file, "c.json");
    EXPECT_EQ(cell.armType, 6U);
    EXPECT_EQ(cell.AxisCount(), 6U);
    const KineSixAxisParam& p = cell.param.SixAxis;
    const double fields[] = {
        p.a1,     p.a2,     p.a3,     p.d1,    p.d4,     p.d6,     p.d3,     p.lateralOffset,
        p.d5,     p.a4,     p.a5,     p.beta2, p.alpha1, p.alpha2, p.alpha3, p.alpha4,
        p.alpha5, p.mountX, p.mountY, p.G[0],  p.G[1],   p.G[2],   p.G[3],   p.G[4],
        p.G[5],   p.G[6],   p.k2,     p.k3,    p.k5};
    double expected = 1;
    for (const double field : fields) EXPECT_EQ(field, expected++);
}

TEST(ParseCell, what_a_six_axis_arm_leaves_out_is_nominal_and_rigid)
{
    const Cell cell = Read("{" + kArm + "}");
    const KineSixAxisParam& p = cell.param.SixAxis;
    EXPECT_EQ(p.alpha1, 90.0);
    EXPECT_EQ(p.alpha2, 0.0);
    EXPECT_EQ(p.alpha3, 90.0);
    EXPECT_EQ(p.alpha4, -90.0);
    EXPECT_EQ(p.alpha5, 90.0);
    for (const double zero : {p.d3, p.lateralOffset, p.d5, p.a4, p.a5, p.beta2, p.mountX, p.mountY, p.G[0],
                              p.G[6], p.k2, p.k3, p.k5})
        EXPECT_EQ(zero, 0.0);
    EXPECT_EQ(
        Read(R"({"arm": {"type": 6, "a1_mm": 1, "a2_mm": 2, "a3_mm": 3, "d1_mm": 4, "d4_mm": 5, "d6_mm": 6,
                       "weights_Nmm": [7]}})")
            .param.SixAxis.G[1],
        0.0);
}

TEST(ParseCell, each_key_of_a_four_axis_arm_lands_in_its_field)
{
    for (const std::uint32_t type : {4U, 4110U}) {
        const Cell cell = Read("{\"arm\": {\"type\": " + std::to_string(type) +
                               R"(, "link1_length_mm": 1, "link2_length_mm": 2, "z_offset_mm": 3,
            "screw_lead_mm_per_turn": 4, "link1_tilt_x_deg": 5, "link2_tilt_x_deg": 6, "link1_tilt_y_deg": 7,
            "link2_tilt_y_deg": 8}})");
        EXPECT_EQ(cell.armType, type);
        EXPECT_EQ(cell.AxisCount(), 4U);
        const KineFourAxisParam& p = cell.param.FourAxis;
        double expected = 1;
        for (const double field : {p.Link1Length, p.Link2Length, p.ZOffset, p.ScrewLead, p.Link1TiltX,
                                   p.Link2TiltX, p.Link1TiltY, p.Link2TiltY})
            EXPECT_EQ(field, expected++);
    }
    EXPECT_EQ(Read("{" + kScara + "}").param.FourAxis.Link2TiltY, 0.0);
}

TEST(ParseCell, limits_are_open_unless_given)
{
    const Cell open = Read("{" + kArm + "}");
    EXPECT_FALSE(open.hasLimits);
    const Cell cell =
        Read(With(R"("limits": {"lower_deg": [-1, -2, -3, -4, -5, -6], "upper_deg": [1, 2, 3, 4, 5, 6]})"));
    EXPECT_TRUE(cell.hasLimits);
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(open.lower.Axis[i], -999.0);
        EXPECT_EQ(open.upper.Axis[i], 999.0);
        EXPECT_EQ(cell.lower.Axis[i], i < 6 ? -1.0 - i : -999.0);
        EXPECT_EQ(cell.upper.Axis[i], i < 6 ? 1.0 + i : 999.0);
    }
}

TEST(ParseCell, mechanics_land_in_the_records)
{
    const Cell cell =
        Read(With(R"("external_axes": [{"name": "turn", "kind": "rotary", "travel_deg": [-10, 20]},
            {"kind": "linear", "travel_mm": [0, 4000]}, {"kind": "rotary"}],
        "mechanical_units": [{"name": "track", "kind": "linear", "axes": [{"external_axis": 1, "frame": )" +
                  FrameText(1) + R"(}]},
            {"kind": "rotary", "axes": [{"external_axis": 2}]},
            {"kind": "two-rotary", "axes": [{"external_axis": 0, "frame": )" +
                  FrameText(10) + R"(}, {"external_axis": 2, "frame": )" + FrameText(20) + R"(}]}],
        "robot_on_unit": 2)"));
    ASSERT_EQ(cell.externalAxes.size(), 3U);
    EXPECT_EQ(cell.externalAxes[0].name, "turn");
    EXPECT_FALSE(cell.externalAxes[0].linear);
    EXPECT_EQ(cell.externalAxes[0].travel, std::pair(-10.0, 20.0));
    EXPECT_TRUE(cell.externalAxes[1].linear);
    EXPECT_EQ(cell.externalAxes[1].travel, std::pair(0.0, 4000.0));
    EXPECT_FALSE(cell.externalAxes[2].travel);

    ASSERT_EQ(cell.units.size(), 3U);
    const KineMechUnit& track = cell.units[0].record;
    EXPECT_EQ(cell.units[0].name, "track");
    EXPECT_EQ(track.Active, 1);
    EXPECT_EQ(track.UnitKind, 1);
    EXPECT_EQ(track.AxisCount, 1);
    EXPECT_EQ(track.AxisParamIndex[0], 1);
    ExpectFrame(track.AxisFrame[0], 1);
    EXPECT_EQ(cell.units[1].record.UnitKind, 2);
    ExpectFrame(cell.units[1].record.AxisFrame[0], 0, 0, 0, 0, 0, 0);
    const KineMechUnit& table = cell.units[2].record;
    EXPECT_EQ(table.UnitKind, 3);
    EXPECT_EQ(table.AxisCount, 2);
    EXPECT_EQ(table.AxisParamIndex[0], 0);
    EXPECT_EQ(table.AxisParamIndex[1], 2);
    ExpectFrame(table.AxisFrame[0], 10);
    ExpectFrame(table.AxisFrame[1], 20);
    // The unit at index 0 says what the robot stands on.
    EXPECT_EQ(cell.carrier, 2);
    EXPECT_EQ(track.Option1, 1);
    EXPECT_EQ(track.Option2, 2);
    EXPECT_EQ(table.Option1, 0);
}

TEST(ParseCell, what_rides_on_a_linear_unit_is_turned_by_its_second_frame)
{
    const Cell cell =
        Read(With(R"("mechanical_units": [{"kind": "linear", "axes": [{"external_axis": 0, "frame": )" +
                  FrameText(1) + R"(}], "carried_frame": )" + FrameText(10) + "}]"));
    const KineMechUnit& track = cell.units.at(0).record;
    EXPECT_EQ(track.AxisCount, 1);
    ExpectFrame(track.AxisFrame[0], 1);
    ExpectFrame(track.AxisFrame[1], 10);
    EXPECT_EQ(Says(With(R"("mechanical_units": [{"kind": "rotary", "axes": [], "carried_frame": {}}])")),
              "c.json:2:53: mechanical_units[0].carried_frame: unknown key");
}

TEST(ParseCell, tools_work_objects_and_loads_land_in_the_records)
{
    const std::string load =
        R"({"mass_kg": 1, "cog_mm": [2, 3, 4], "axes_of_moment_deg": [5, 6, 7], "inertia": [8, 9, 10]})";
    const Cell cell = Read(With(R"("tools": {"torch": {"frame": )" + FrameText(1) + R"(, "load": )" + load +
                                R"(}, "stand": {"held_by_robot": false}},
        "work_objects": {"fixed": {"user_frame": )" +
                                FrameText(10) + R"(, "object_frame": )" + FrameText(20) +
                                R"(}, "on unit": {"mechanical_unit": -1}, "held": {"held_by_robot": true}},
        "loads": {"box": )" + load +
                                "}"));
    ASSERT_EQ(cell.tools.size(), 3U);
    EXPECT_EQ(cell.tools[0].name, "none");
    EXPECT_EQ(cell.tools[0].record.HeldByRobot, 1);
    const KineTool* torch = Find(cell.tools, "torch");
    ASSERT_NE(torch, nullptr);
    EXPECT_EQ(torch->HeldByRobot, 1);
    ExpectFrame(torch->TFrame, 1);
    EXPECT_EQ(Find(cell.tools, "stand")->HeldByRobot, 0);
    const KineWobj* fixed = Find(cell.workObjects, "fixed");
    ASSERT_NE(fixed, nullptr);
    EXPECT_EQ(fixed->HeldByRobot, 0);
    EXPECT_EQ(fixed->UFFix, 1);
    ExpectFrame(fixed->UFrame, 10);
    ExpectFrame(fixed->OFrame, 20);
    EXPECT_EQ(Find(cell.workObjects, "on unit")->UFFix, 0);
    EXPECT_EQ(Find(cell.workObjects, "on unit")->MechUnitIndex, -1);
    EXPECT_EQ(Find(cell.workObjects, "held")->HeldByRobot, 1);
    EXPECT_EQ(Find(cell.workObjects, "held")->UFFix, 1);
    EXPECT_EQ(cell.workObjects[0].record.UFFix, 1);
    EXPECT_EQ(cell.workObjects[0].record.HeldByRobot, 0);
    for (const KineLoad& read : {torch->TLoad, *Find(cell.loads, "box")}) {
        EXPECT_EQ(read.Mass, 1.0);
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(read.Cog[i], 2.0 + i);
            EXPECT_EQ(read.Aom[i], 5.0 + i);
            EXPECT_EQ(read.Inertia[i], 8.0 + i);
        }
    }
    EXPECT_EQ(Find(cell.loads, "none")->Mass, 0.0);
    EXPECT_EQ(Find(cell.tools, "drill"), nullptr);
}

TEST(ParseCell, targets_land_in_the_records)
{
    const Cell cell =
        Read(With(R"("joints": {"home": {"axes_deg": [1, 2, 3, 4, 5, 6], "external_mm_or_deg": [7, 8]}},
        "poses": {"open": )" +
                  FrameText(1) + R"(, "closed": {"cfg": [-1, 2, -2147483648, 2147483647],
            "external_mm_or_deg": [1, 2, 3, 4, 5, 6]}})"));
    const KineJoint& home = cell.joints.at(0).record;
    for (int i = 0; i < 8; ++i) EXPECT_EQ(home.Axis[i], i < 6 ? 1.0 + i : 0.0);
    EXPECT_EQ(home.ExtAxis[1], 8.0);
    EXPECT_EQ(home.ExtAxis[2], 0.0);
    ExpectFrame(cell.poses.at(0).record.pose.Frame, 1);
    EXPECT_FALSE(cell.poses.at(0).record.hasConfig);
    const PoseTarget& closed = cell.poses.at(1).record;
    EXPECT_TRUE(closed.hasConfig);
    EXPECT_EQ(closed.pose.Cfg1, -1);
    EXPECT_EQ(closed.pose.Cfg2, 2);
    EXPECT_EQ(closed.pose.Cfg3, -2147483648);
    EXPECT_EQ(closed.pose.Cfg4, 2147483647);
    EXPECT_EQ(closed.pose.ExtAxis[5], 6.0);
}

TEST(ParseCell, the_choice_of_the_cell_holds_for_expectations_that_say_nothing_else)
{
    const Cell cell = Read(With(R"("tools": {"t": {}, "u": {}}, "work_objects": {"w": {}}, "loads": {"l": {}},
        "joints": {"home": {"axes_deg": [1, 2, 3, 4, 5, 6]}},
        "use": {"tool": "t", "load": "l"},
        "expect": [{"joints": "home", "code": "0x6012"},
            {"what": "W", "source": "S", "joints": {"axes_deg": [6, 5, 4, 3, 2, 1]}, "in": "vision", "tool": "u",
             "work_object": "w", "load": "none", "frame": )" +
                                FrameText(1) + R"(, "within_mm": 0, "within_deg": 2}])"));
    EXPECT_EQ(cell.use.tool, "t");
    EXPECT_EQ(cell.use.workObject, "none");
    EXPECT_EQ(cell.use.load, "l");
    ASSERT_EQ(cell.expectations.size(), 2U);
    const Expectation& refused = cell.expectations[0];
    EXPECT_EQ(refused.selection.tool, "t");
    EXPECT_EQ(refused.joints.Axis[5], 6.0);
    EXPECT_EQ(refused.code, KINE_ERR_WOBJ);
    EXPECT_EQ(refused.reference, Reference::kWorkObject);
    EXPECT_EQ(refused.withinMm, 0.001);
    EXPECT_EQ(refused.withinDeg, 0.001);
    EXPECT_EQ(refused.position.line, 5U);
    const Expectation& pose = cell.expectations[1];
    EXPECT_EQ(pose.what, "W");
    EXPECT_EQ(pose.source, "S");
    EXPECT_EQ(pose.joints.Axis[0], 6.0);
    EXPECT_EQ(pose.reference, Reference::kVision);
    EXPECT_EQ(pose.selection.tool, "u");
    EXPECT_EQ(pose.selection.workObject, "w");
    EXPECT_EQ(pose.selection.load, "none");
    ExpectFrame(pose.frame, 1);
    EXPECT_FALSE(pose.code);
    EXPECT_EQ(pose.withinMm, 0.0);
    EXPECT_EQ(pose.withinDeg, 2.0);
}

TEST(ParseCell, a_field_is_found_again_or_what_is_around_it)
{
    const Cell cell =
        Read("{\n \"arm\": " + kArm.substr(7) + ",\n \"tools\": {\n  \"t\": {\"frame\": {\"x_mm\": 1}}}}");
    EXPECT_EQ(cell.PlaceOf("arm"), "c.json:2:9");
    EXPECT_EQ(cell.PlaceOf("tools.t.frame.x_mm"), "c.json:4:27");
    EXPECT_EQ(cell.PlaceOf("tools.t.frame.y_mm"), "c.json:4:18");
    EXPECT_EQ(cell.PlaceOf("arm.alpha_deg[2]"), "c.json:2:9");
    EXPECT_EQ(cell.PlaceOf("limits.lower_deg"), "c.json");
}

struct Fault
{
    const char* rest;
    const char* message;
};

// One line each: where, which field, what.
class SecondLine : public testing::TestWithParam<Fault>
{
};

TEST_P(SecondLine, is_refused_with_place_field_and_reason)
{
    EXPECT_EQ(Says(With(GetParam().rest)), "c.json:2:" + std::string(GetParam().message));
}

const Fault kFaults[] = {
    {R"("nmae": "x")", R"(1: nmae: unknown key; did you mean "name"?)"},
    {R"("qqqqqqqqqqqq": "x")", "1: qqqqqqqqqqqq: unknown key"},
    {R"("": 1)", "1: unknown key"},
    {R"("name": 5)", "9: name: is a number, should be a text"},
    {R"("name": "two\nlines")", "9: name: has a control character, such as a tab or a new line"},
    {R"("limits": [])", "11: limits: is an array, should be an object"},
    {R"("limits": {"lower_deg": [1,2,3,4,5,6]})", R"(11: limits: "upper_deg" is missing)"},
    {R"("limits": {"lower": 1, "lower_deg": [1,2,3,4,5,6], "upper_deg": [1,2,3,4,5,6]})",
     R"(12: limits.lower: unknown key; did you mean "lower_deg"?)"},
    {R"("limits": {"lower_deg": [1,2,3,4,5], "upper_deg": [1,2,3,4,5,6]})",
     "25: limits.lower_deg: should be an array of 6 numbers, has 5"},
    {R"("limits": {"lower_deg": 7, "upper_deg": [1,2,3,4,5,6]})",
     "25: limits.lower_deg: should be an array of 6 numbers, is a number"},
    {R"("limits": {"lower_deg": [1,2,"3",4,5,6], "upper_deg": [1,2,3,4,5,6]})",
     "30: limits.lower_deg[2]: is a text, should be a number"},
    {R"("external_axes": {})", "18: external_axes: is an object, should be an array"},
    {R"("external_axes": [{},{},{},{},{},{},{},{},{}])", "18: external_axes: has more than 8 entries"},
    {R"("external_axes": [{}])", R"(19: external_axes[0]: "kind" is missing)"},
    {R"("external_axes": [{"kind": "round"}])",
     R"(28: external_axes[0].kind: should be "rotary" or "linear")"},
    {R"("external_axes": [{"kind": "rotary", "travel_mm": [0, 1]}])",
     R"(38: external_axes[0].travel_mm: unknown key; did you mean "travel_deg"?)"},
    {R"("external_axes": [7])", "19: external_axes[0]: is a number, should be an object"},
    {R"("mechanical_units": [{"kind": 1, "axes": []}])",
     R"(31: mechanical_units[0].kind: should be "linear", "rotary" or "two-rotary")"},
    {R"("mechanical_units": [{"kind": "linear"}])", R"(22: mechanical_units[0]: "axes" is missing)"},
    {R"("mechanical_units": [{"kind": "linear", "axes": [{}]}])",
     R"(50: mechanical_units[0].axes[0]: "external_axis" is missing)"},
    {R"("mechanical_units": [{"kind": "linear", "axes": [{"external_axis": 256}]}])",
     "68: mechanical_units[0].axes[0].external_axis: should be a whole number from 0 to 255"},
    {R"("mechanical_units": [{"kind": "linear", "axes": [{"external_axis": 0.5}]}])",
     "68: mechanical_units[0].axes[0].external_axis: should be a whole number from 0 to 255"},
    {R"("mechanical_units": [{"kind": "linear", "axes": [{},{},{},{},{},{},{}]}])",
     "49: mechanical_units[0].axes: has more than 6 entries"},
    {R"("robot_on_unit": 0)", R"(18: robot_on_unit: needs "mechanical_units")"},
    {R"("tools": {"none": {}})",
     R"(11: tools.none: is no name for it: not empty, not "none", and without @ , ; " and control characters)"},
    {R"("tools": {"a,b": {}})",
     R"(11: tools.a,b: is no name for it: not empty, not "none", and without @ , ; " and control characters)"},
    {R"("tools": {"\u001b[2J": {}})",
     R"(11: tools.?[2J: is no name for it: not empty, not "none", and without @ , ; " and control characters)"},
    {R"("tools": {"t": {"held_by_robot": 1}})",
     "34: tools.t.held_by_robot: is a number, should be true or false"},
    {R"("tools": {"t": {"frame": {"x": 1}}})", R"(27: tools.t.frame.x: unknown key; did you mean "x_mm"?)"},
    {R"("tools": {"t": {"load": {"cog_mm": [1, 2]}}})",
     "36: tools.t.load.cog_mm: should be an array of 3 numbers, has 2"},
    {R"("tools": {"t": {"load": null}})", "25: tools.t.load: is null, should be an object"},
    {R"("work_objects": {"w": {"mechanical_unit": 128}})",
     "43: work_objects.w.mechanical_unit: should be a whole number from -128 to 127"},
    {R"("joints": {"j": {}})", R"(17: joints.j: "axes_deg" is missing)"},
    {R"("joints": {"j": {"axes_deg": [1,2,3,4]}})",
     "30: joints.j.axes_deg: should be an array of 6 numbers, has 4"},
    {R"("joints": {"j": {"axes_deg": [1,2,3,4,5,6], "external_mm_or_deg": []}})",
     "67: joints.j.external_mm_or_deg: should be an array of 1 to 6 numbers, has 0"},
    {R"("poses": {"p": {"cfg": [0, 0, 0.5, 0]}})", "24: poses.p.cfg: should be whole numbers of 32 bits"},
    {R"("poses": {"p": {"cfg": [0, 0, 2147483648, 0]}})",
     "24: poses.p.cfg: should be whole numbers of 32 bits"},
    {R"("poses": {"p": {"cfg": [0, 0, -1e300, 0]}})", "24: poses.p.cfg: should be whole numbers of 32 bits"},
    {R"("use": {"tool": "drill"})", R"(17: use.tool: "drill" is not in this cell)"},
    {R"("use": {"tool": 1})", "17: use.tool: is a number, should be a text"},
    {R"("use": {"work_object": "w"})", R"(24: use.work_object: "w" is not in this cell)"},
    {R"("use": {"load": "l"})", R"(17: use.load: "l" is not in this cell)"},
    {R"("use": {"wobj": "none"})", "9: use.wobj: unknown key"},
    {R"("expect": [{"code": "0x6012"}])", R"(12: expect[0]: "joints" is missing)"},
    {R"("expect": [{"joints": "home", "code": "0x6012"}])",
     R"(23: expect[0].joints: "home" is not in this cell)"},
    {R"("expect": [{"joints": {"axes_deg": [1,2,3,4,5,6]}}])",
     R"(12: expect[0]: should have either "frame" or "code")"},
    {R"("expect": [{"joints": {"axes_deg": [1,2,3,4,5,6]}, "code": "0x6012", "frame": {}}])",
     R"(12: expect[0]: should have either "frame" or "code")"},
    {R"("expect": [{"joints": {"axes_deg": [1,2,3,4,5,6]}, "code": "0x-123"}])",
     R"(60: expect[0].code: should be a result code such as "0x6012")"},
    {R"("expect": [{"joints": {"axes_deg": [1,2,3,4,5,6]}, "code": 24594}])",
     R"(60: expect[0].code: should be a result code such as "0x6012")"},
    {R"("expect": [{"joints": {"axes_deg": [1,2,3,4,5,6]}, "frame": {}, "in": "wobj"}])",
     R"(71: expect[0].in: should be "base", "flange", "world", "work_object" or "vision")"},
    {R"("expect": [{"joints": {"axes_deg": [1,2,3,4,5,6]}, "frame": {}, "within_mm": -1}])",
     "78: expect[0].within_mm: should not be negative"},
    {R"("arm": {})", R"(1: "arm" is given twice in one object; first in line 1)"},
    {R"("about": 1e999)", "10: a number too large"},
};
INSTANTIATE_TEST_SUITE_P(ParseCell, SecondLine, testing::ValuesIn(kFaults),
                         [](const auto& of) { return std::to_string(of.index); });

TEST(ParseCell, an_arm_is_needed_and_a_known_one)
{
    EXPECT_EQ(Says("{}"), "c.json:1:1: \"arm\" is missing");
    EXPECT_EQ(Says("[]"), "c.json:1:1: is an array, should be an object");
    EXPECT_EQ(Says(R"({"arm": 6})"), "c.json:1:9: arm: is a number, should be an object");
    EXPECT_EQ(Says(R"({"arm": {}})"), "c.json:1:9: arm: \"type\" is missing");
    EXPECT_EQ(Says(R"({"arm": {"type": 5}})"), "c.json:1:18: arm.type: should be 4, 6 or 4110");
    EXPECT_EQ(Says(R"({"arm": {"type": 1e300}})"), "c.json:1:18: arm.type: should be 4, 6 or 4110");
    EXPECT_EQ(Says(R"({"arm": {"type": "6"}})"), "c.json:1:18: arm.type: is a text, should be a number");
    EXPECT_EQ(Says(R"({"arm": {"type": 4, "link1_length_mm": 1, "link2_length_mm": 2, "z_offset_mm": 3}})"),
              "c.json:1:9: arm: \"screw_lead_mm_per_turn\" is missing");
    EXPECT_EQ(Says("{" + kScara + R"(, "joints": {"j": {"axes_deg": [1, 2, 3, 4, 5, 6]}}})").substr(0, 7),
              "c.json:");
}

TEST(ParseCell, all_faults_come_in_one_run)
{
    EXPECT_EQ(Says("{\"arm\": {\"type\": 6, \"a1_mm\": \"1\", \"a2\": 2, \"a3_mm\": 3, \"d1_mm\": 4, "
                   "\"d4_mm\": 5, \"d6_mm\": 6},\n"
                   "\"tools\": {\"t\": 1},\n\"extra\": 0}"),
              "c.json:1:30: arm.a1_mm: is a text, should be a number\n"
              "c.json:1:9: arm: \"a2_mm\" is missing\n"
              "c.json:1:35: arm.a2: unknown key; did you mean \"a2_mm\"?\n"
              "c.json:2:16: tools.t: is a number, should be an object\n"
              "c.json:3:1: extra: unknown key");
}

TEST(ParseCell, twenty_faults_are_shown_and_the_rest_counted)
{
    std::string rest;
    for (int i = 0; i < 25; ++i) rest += (i ? ",\"zzzzzzzz" : "\"zzzzzzzz") + std::to_string(i) + "\": 0";
    const std::string message = Says(With(rest));
    EXPECT_EQ(std::count(message.begin(), message.end(), '\n'), 20);
    EXPECT_TRUE(message.ends_with("\nc.json: and 5 more")) << message;
}

TEST(ParseCell, long_keys_are_cut_in_messages)
{
    const std::string message = Says(With('"' + std::string(5000, 'k') + "\": 0"));
    EXPECT_EQ(message, "c.json:2:1: " + std::string(200, 'k') + "...: unknown key");
}

TEST(ParseCell, a_file_full_of_faults_takes_no_time)
{
    // Every key compared with every known one would take minutes.
    std::string rest = "\"a0\": 0";
    for (int i = 1; i < 80000; ++i) rest += ",\"a" + std::to_string(i) + "\":0";
    ASSERT_LT(With(rest).size(), 1U << 20U);
    EXPECT_TRUE(Says(With(rest)).ends_with("c.json: and 79980 more"));
}

TEST(ParseCell, more_than_a_mebibyte_is_no_cell)
{
    const std::string cell = "{" + kArm + "}";
    EXPECT_EQ(Says(cell + std::string((1U << 20U) - cell.size(), ' ')), "");
    EXPECT_EQ(Says(cell + std::string((1U << 20U) - cell.size() + 1, ' ')),
              "c.json:1:1: larger than 1 MiB; no cell is");
}

TEST(ParseCell, wrong_cells_that_are_cells_are_read_as_they_stand)
{
    const Cell cell = Read(With(R"("limits": {"lower_deg": [9,9,9,9,9,9], "upper_deg": [1,1,1,1,1,1]},
        "mechanical_units": [{"kind": "linear", "axes": [{"external_axis": 9}]}, {"kind": "rotary", "axes": []},
            {"kind": "rotary", "axes": []}, {"kind": "rotary", "axes": []}], "robot_on_unit": 7,
        "work_objects": {"w": {"mechanical_unit": 9}}, "loads": {"l": {"mass_kg": -1}})"));
    EXPECT_EQ(cell.units.size(), 4U);
    EXPECT_EQ(cell.units[0].record.AxisParamIndex[0], 9);
    EXPECT_EQ(cell.carrier, 7);
    EXPECT_EQ(Find(cell.loads, "l")->Mass, -1.0);
}

TEST(ReadTextFile, what_cannot_be_read_is_named)
{
    EXPECT_EQ(FailureText([] { ReadCell("/nowhere/c.json"); }), "/nowhere/c.json: No such file or directory");
    EXPECT_EQ(FailureText([] { ReadCell("/"); }), "/: Is a directory");
    EXPECT_EQ(FailureText([] { ReadTextFile("/dev/zero"); }), "/dev/zero: larger than 16 MiB");
    EXPECT_EQ(FailureText([] { ReadCell("/dev/null"); }),
              "/dev/null:1:1: not JSON: unexpected end of input; expected '[', '{', or a literal");
}

}  // namespace
}  // namespace kine_cli
