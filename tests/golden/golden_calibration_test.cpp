// The eighteen calibrations through the exports, against tables computed with 50 digits in another way: least
// squares by orthogonal triangles instead of normal equations, circles by their circumcentre. Every column
// comes with a bound of its own, which follows the roundings of doubles through the calibration: narrow where
// the taught poses are well spread, wide where they are not, 0 where doubles give the exact result.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>

#include "golden_table.h"
#include "support/cell_setup.h"
#include "support/records.h"

namespace kine::test {
namespace {

// What a row gives.
struct Taught
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
    KineCalibError error = Untouched<KineCalibError>();
    double tilt = Untouched<double>();
};

using Poses = const KinePose*;

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
    KineResult (*call)(Poses p, const Taught& in, Written& out);
};

const Calibration kTools[] = {
    {"Kine_CalcExtToolPrm_1P", 1, kArmType,
     [](Poses p, const Taught&, Written& out) { return Kine_CalcExtToolPrm_1P(p, &out.frame); }},
    {"Kine_CalcExtToolPrm_1PZX", 3, kArmType,
     [](Poses p, const Taught&, Written& out) {
         return Kine_CalcExtToolPrm_1PZX(p, p + 1, p + 2, &out.frame);
     }},
    {"Kine_CalcExtToolPrm_3P", 3, kArmType | kReport,
     [](Poses p, const Taught&, Written& out) {
         return Kine_CalcExtToolPrm_3P(p, p + 1, p + 2, &out.frame, &out.error);
     }},
    {"Kine_CalcExtToolPrm_3PZX", 6, kArmType | kReport,
     [](Poses p, const Taught&, Written& out) {
         return Kine_CalcExtToolPrm_3PZX(p, p + 1, p + 2, p + 3, p + 4, p + 5, &out.frame, &out.error);
     }},
    {"Kine_CalcGripToolPrm_3P", 3, kArmType | kReport,
     [](Poses p, const Taught&, Written& out) {
         return Kine_CalcGripToolPrm_3P(p, p + 1, p + 2, &out.frame, &out.error);
     }},
    {"Kine_CalcGripToolPrm_3PZX", 6, kArmType | kReport,
     [](Poses p, const Taught&, Written& out) {
         return Kine_CalcGripToolPrm_3PZX(p, p + 1, p + 2, p + 3, p + 4, p + 5, &out.frame, &out.error);
     }},
    {"Kine_CalcGripToolPrm_5P", 5, kArmType | kReport,
     [](Poses p, const Taught&, Written& out) {
         return Kine_CalcGripToolPrm_5P(p, p + 1, p + 2, p + 3, p + 4, &out.frame, &out.error);
     }},
    {"Kine_CalcGripToolPrm_Scara2P", 2, kArmType,
     [](Poses p, const Taught&, Written& out) { return Kine_CalcGripToolPrm_Scara2P(p, p + 1, &out.frame); }},
};

const Calibration kWobjs[] = {
    {"Kine_CalcExtWobj_UserPrm_2P", 2, kTilt,
     [](Poses p, const Taught&, Written& out) {
         return Kine_CalcExtWobj_UserPrm_2P(p, p + 1, &out.frame, &out.tilt);
     }},
    {"Kine_CalcExtWobj_UserPrm_3P", 3, kTilt,
     [](Poses p, const Taught&, Written& out) {
         return Kine_CalcExtWobj_UserPrm_3P(p, p + 1, p + 2, &out.frame, &out.tilt);
     }},
    {"Kine_CalcExtWobj_UserPrm_Cirle3P", 3, kTilt,
     [](Poses p, const Taught&, Written& out) {
         return Kine_CalcExtWobj_UserPrm_Cirle3P(p, p + 1, p + 2, &out.frame, &out.tilt);
     }},
    {"Kine_CalcExtWobj_ObjPrm_3P", 3, kGivenFrame | kTilt,
     [](Poses p, const Taught& in, Written& out) {
         return Kine_CalcExtWobj_ObjPrm_3P(p, p + 1, p + 2, &in.given, &out.frame, &out.tilt);
     }},
    {"Kine_CalcGripWobj_UserPrm_3P", 3, kTilt,
     [](Poses p, const Taught&, Written& out) {
         return Kine_CalcGripWobj_UserPrm_3P(p, p + 1, p + 2, &out.frame, &out.tilt);
     }},
    {"Kine_CalcGripWobj_ObjPrm_3P", 3, kGivenFrame | kTilt,
     [](Poses p, const Taught& in, Written& out) {
         return Kine_CalcGripWobj_ObjPrm_3P(p, p + 1, p + 2, &in.given, &out.frame, &out.tilt);
     }},
    {"Kine_CalcUnFixWobj_ObjPrm_3P", 3, kUnit | kAxisFrames | kTilt,
     [](Poses p, const Taught& in, Written& out) {
         return Kine_CalcUnFixWobj_ObjPrm_3P(in.unit, p, p + 1, p + 2, &out.frame, &out.tilt);
     }},
};

const Calibration kPositioners[] = {
    {"Kine_CalcPositionerJ1Prm_3P", 3, kUnit | kAxisWords,
     [](Poses p, const Taught& in, Written& out) {
         return Kine_CalcPositionerJ1Prm_3P(in.unit, p, p + 1, p + 2, &out.frame);
     }},
    {"Kine_CalcPositionerJnPrm_3P", 3, kUnit | kAxisWords | kAxisNumber | kGivenFrame,
     [](Poses p, const Taught& in, Written& out) {
         return Kine_CalcPositionerJnPrm_3P(in.unit, in.axis, p, p + 1, p + 2, &in.given, &out.frame);
     }},
    {"Kine_CalcRobotBasePrm_3P", 3, kUnit | kAxisWords | kReport,
     [](Poses p, const Taught& in, Written& out) {
         return Kine_CalcRobotBasePrm_3P(in.unit, p, p + 1, p + 2, &out.frame, &out.error);
     }},
};

void ReadUnit(Row& row, unsigned columns, Taught& in)
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

Taught ReadTaught(Row& row, const Calibration& calibration)
{
    Taught in;
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
void SetUp(const Taught& in, const KineKinematicParam& sixAxis, const KineKinematicParam& fourAxis)
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
    const std::array<double, 6> actual = {frame.X, frame.Y, frame.Z, frame.A, frame.B, frame.C};
    const auto expected = row.Numbers<6>();
    const auto bound = row.Numbers<6>();
    for (std::size_t i = 0; i < 6; ++i) {
        const double off = actual[i] - expected[i];
        // +180 and -180 degrees are one angle.
        ExpectWithin({"XYZABC"[i]}, actual[i], expected[i], bound[i],
                     i < 3 ? off : std::remainder(off, 360.0));
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
void ExpectRow(const Calibration& calibration, const Taught& in, Row& row)
{
    const auto code = static_cast<KineResult>(row.Integer());
    Written out;
    ASSERT_EQ(calibration.call(in.poses.data(), in, out), code);
    if (code == KINE_OK) {
        ExpectFrame(out.frame, row);
    } else {
        EXPECT_TRUE(IsUntouched(out.frame));
    }
    // A refused frame step leaves the report of the step before it.
    if ((calibration.columns & kReport) && (code == KINE_OK || !row.AtEnd())) {
        ExpectReport(out.error, row);
    } else {
        EXPECT_TRUE(IsUntouched(out.error));
    }
    if ((calibration.columns & kTilt) && code == KINE_OK) {
        ExpectTilt(out.tilt, row);
    } else {
        EXPECT_TRUE(IsUntouched(out.tilt));
    }
    EXPECT_TRUE(row.AtEnd());
}

template <std::size_t N>
void ExpectTable(const std::string& file, const Calibration (&calibrations)[N])
{
    const KineKinematicParam sixAxis = ArmOfTable("wrist").param;
    const KineKinematicParam fourAxis = ArmOfTable("scara").param;
    std::array<int, N> rows{};
    for (Row& row : ReadTable(file)) {
        const std::string name = row.Word();
        const std::string trace = row.Place() + " " + name + " " + row.Word();
        SCOPED_TRACE(trace);
        std::size_t i = 0;
        while (i < N && name != calibrations[i].name) ++i;
        ASSERT_LT(i, N);
        const Taught in = ReadTaught(row, calibrations[i]);
        SetUp(in, sixAxis, fourAxis);
        ExpectRow(calibrations[i], in, row);
        ++rows[i];
    }
    for (std::size_t i = 0; i < N; ++i) EXPECT_GE(rows[i], 20) << calibrations[i].name;
}

TEST(GoldenCalibration, tools_from_taught_poses) { ExpectTable("calib_tool.txt", kTools); }

TEST(GoldenCalibration, work_objects_from_taught_points) { ExpectTable("calib_wobj.txt", kWobjs); }

TEST(GoldenCalibration, positioners_and_track_from_taught_points)
{
    ExpectTable("calib_positioner.txt", kPositioners);
}

}  // namespace
}  // namespace kine::test
