// The eighteen calibrations through the exports, against tables computed with 50 digits in another way: least
// squares by orthogonal triangles instead of normal equations, circles by their circumcentre. Every column
// comes with a bound of its own, which follows the roundings of doubles through the calibration: narrow where
// the taught poses are well spread, wide where they are not, 0 where doubles give the exact result.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "golden_table.h"
#include "support/positioner_calib_calls.h"
#include "support/tool_calib_calls.h"
#include "support/wobj_calib_calls.h"

namespace kine::test {
namespace {

// What a row gives.
struct Inputs
{
    std::uint32_t armType = KINE_ARM_SIX_AXIS;
    std::int32_t unit = 0;
    std::int32_t axis = 0;
    std::int32_t unitCount = 0;
    std::int32_t slot = 0;
    KineMechUnit mechUnit{};
    std::array<KineExtAxisParam, 6> extAxes{};
    std::array<KinePose, 6> poses{};
    KineFrame given{};
};

struct Written
{
    KineFrame frame = Untouched<KineFrame>();
    KineCalibError report = Untouched<KineCalibError>();
    double tilt = Untouched<double>();
};

// What a calibration takes besides poses, and writes besides a frame.
enum Columns : unsigned
{
    kArmType = 1,
    kUnit = 2,  // poses have external axes then
    kAxisFrames = 4,
    kAxisWords = 8,
    kAxisNumber = 16,
    kGivenFrame = 32,
    kReport = 64,
    kTilt = 128,
};

struct Calibration
{
    const char* name;
    std::size_t poses;
    unsigned columns;
    std::function<KineResult(const Inputs& in, Written& out)> call;
};

unsigned If(bool holds, unsigned columns) { return holds ? columns : 0U; }

Calibration Of(const ToolCalib& tool)
{
    return {tool.name, tool.poses, kArmType | If(tool.reports, kReport),
            [tool](const Inputs& in, Written& out) {
                std::array<const KinePose*, 6> poses{};
                for (std::size_t i = 0; i < tool.poses; ++i) poses[i] = &in.poses[i];
                return tool.run(poses.data(), &out.frame, &out.report);
            }};
}

Calibration Of(const WobjCalib& wobj)
{
    return {wobj.name, wobj.poses,
            kTilt | If(wobj.takesUser, kGivenFrame) | If(wobj == kUnFixObject, kUnit | kAxisFrames),
            [wobj](const Inputs& in, Written& out) {
                const KinePose* p = in.poses.data();
                return wobj.run({{p, p + 1, p + 2}, &in.given, in.unit, &out.frame, &out.tilt});
            }};
}

Calibration Of(const PositionerCalib& positioner)
{
    return {
        positioner.name, 3,
        kUnit | kAxisWords | If(positioner == kJn, kAxisNumber | kGivenFrame) |
            If(positioner.reports, kReport),
        [positioner](const Inputs& in, Written& out) {
            const KinePose* p = in.poses.data();
            return positioner.run({{p, p + 1, p + 2}, &in.given, in.unit, in.axis, &out.frame, &out.report});
        }};
}

void ReadUnit(Row& row, unsigned columns, Inputs& in)
{
    in.unit = row.Integer();
    in.unitCount = row.Integer();
    in.slot = row.Integer();
    in.mechUnit.Active = 1;
    in.mechUnit.UnitKind = static_cast<uint16_t>(row.Integer());
    in.mechUnit.AxisCount = static_cast<uint8_t>(row.Integer());
    for (uint8_t& index : in.mechUnit.AxisParamIndex) index = static_cast<uint8_t>(row.Integer());
    if (columns & kAxisFrames) {
        for (std::size_t i = 0; i < 2; ++i) in.mechUnit.AxisFrame[i] = row.Frame();
    }
    if (columns & kAxisWords) {
        for (KineExtAxisParam& axis : in.extAxes) axis.Word[3] = static_cast<int16_t>(row.Integer());
    }
}

Inputs ReadInputs(Row& row, const Calibration& calibration)
{
    Inputs in;
    const unsigned columns = calibration.columns;
    if (columns & kArmType) in.armType = static_cast<std::uint32_t>(row.Integer());
    if (columns & kUnit) ReadUnit(row, columns, in);
    if (columns & kAxisNumber) in.axis = row.Integer();
    for (std::size_t i = 0; i < calibration.poses; ++i) {
        in.poses[i].Frame = row.Frame();
        if (!(columns & kUnit)) continue;
        for (double& value : in.poses[i].ExtAxis) value = row.Number();
    }
    if (columns & kGivenFrame) in.given = row.Frame();
    return in;
}

// Every row starts from a store that holds nothing else.
void SetUp(const Inputs& in, const KineKinematicParam& sixAxis, const KineKinematicParam& fourAxis)
{
    SetUpArm(sixAxis);
    if (in.armType != KINE_ARM_SIX_AXIS) {
        const bool known = in.armType == KINE_ARM_FOUR_AXIS || in.armType == KINE_ARM_FOUR_AXIS_4110;
        EXPECT_EQ(Kine_InitKinematicParam(in.armType, &fourAxis),
                  known ? KINE_OK : KINE_ERR_UNKNOWN_ARM_TYPE);
    }
    if (in.unitCount == 0) return;
    SetUnitCounts(static_cast<uint32_t>(in.unitCount), 6);
    StoreUnit(in.slot, in.mechUnit);
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(Kine_SetExtAxisParam(i, &in.extAxes[static_cast<std::size_t>(i)]), KINE_OK);
}

void ExpectWithin(const std::string& column, double actual, double expected, double bound, double off)
{
    if (std::isnan(expected)) {
        EXPECT_FALSE(std::isfinite(actual)) << column << " " << actual;
    } else {
        EXPECT_LE(std::fabs(off), bound) << column << " " << actual << " for " << expected;
    }
}

void ExpectFrame(const KineFrame& frame, Row& row)
{
    const auto expected = row.Numbers<6>();
    const auto bound = row.Numbers<6>();
    for (std::size_t i = 0; i < 6; ++i) {
        const double actual = frame.*kElements[i];
        const double off = actual - expected[i];
        // +180 and -180 degrees are one angle.
        ExpectWithin({"XYZABC"[i]}, actual, expected[i], bound[i], i < 3 ? off : std::remainder(off, 360.0));
    }
}

void ExpectReport(const KineCalibError& error, Row& row)
{
    const std::array<double, 3> actual = {error.Largest, error.Mean, error.Smallest};
    const auto expected = row.Numbers<3>();
    const auto bound = row.Numbers<3>();
    for (std::size_t i = 0; i < 3; ++i) {
        ExpectWithin("report " + std::to_string(i), actual[i], expected[i], bound[i],
                     actual[i] - expected[i]);
    }
}

void ExpectTilt(double tilt, Row& row)
{
    const double expected = row.Number();
    const double bound = row.Number();
    ExpectWithin("tilt", tilt, expected, bound, tilt - expected);
}

// What is written stands in the row; the rest is untouched.
void ExpectRow(const Calibration& calibration, const Inputs& in, Row& row)
{
    const auto code = static_cast<KineResult>(row.Integer());
    Written out;
    ASSERT_EQ(calibration.call(in, out), code);
    if (code == KINE_OK) {
        ExpectFrame(out.frame, row);
    } else {
        EXPECT_TRUE(IsUntouched(out.frame));
    }
    // A refused frame step leaves the report of the step before it.
    if ((calibration.columns & kReport) && (code == KINE_OK || !row.AtEnd())) {
        ExpectReport(out.report, row);
    } else {
        EXPECT_TRUE(IsUntouched(out.report));
    }
    if ((calibration.columns & kTilt) && code == KINE_OK) {
        ExpectTilt(out.tilt, row);
    } else {
        EXPECT_TRUE(IsUntouched(out.tilt));
    }
    EXPECT_TRUE(row.AtEnd());
}

template <class Calib>
void ExpectTable(const std::string& file, const std::vector<Calib>& calibs)
{
    const KineKinematicParam sixAxis = ArmOfTable("wrist").param;
    const KineKinematicParam fourAxis = ArmOfTable("scara").param;
    std::map<std::string, int> rows;
    for (Row& row : ReadTable(file)) {
        const std::string name = row.Word();
        const std::string trace = row.Place() + " " + name + " " + row.Word();
        SCOPED_TRACE(trace);
        const auto calib = std::find_if(calibs.begin(), calibs.end(),
                                        [&](const Calib& candidate) { return name == candidate.name; });
        ASSERT_NE(calib, calibs.end());
        const Calibration calibration = Of(*calib);
        const Inputs in = ReadInputs(row, calibration);
        SetUp(in, sixAxis, fourAxis);
        ExpectRow(calibration, in, row);
        ++rows[name];
    }
    for (const Calib& calib : calibs) EXPECT_GE(rows[calib.name], 20) << calib.name;
}

TEST(GoldenCalibration, tools_from_taught_poses) { ExpectTable("calib_tool.txt", kToolCalibs); }

TEST(GoldenCalibration, work_objects_from_taught_points) { ExpectTable("calib_wobj.txt", kWobjCalibs); }

TEST(GoldenCalibration, positioners_and_track_from_taught_points)
{
    ExpectTable("calib_positioner.txt", kPositionerCalibs);
}

}  // namespace
}  // namespace kine::test
