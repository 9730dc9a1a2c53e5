// What the work-object calibrations refuse before they solve anything, in which order, and that a refusal
// leaves the results alone. The limits of the solutions have tests of their own.
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "support/wobj_calib_calls.h"

using namespace kine::test;

namespace {

struct Fault
{
    std::string name;
    std::function<void(WobjCalibRequest&)> make;
};

// All of them are KINE_ERR_POSE.
std::vector<Fault> RecordFaults(const WobjCalib& call)
{
    std::vector<Fault> faults;
    for (std::size_t place = 0; place < call.poses; ++place) {
        const std::string pose = "pose " + std::to_string(place);
        faults.push_back({pose + " null", [=](WobjCalibRequest& r) { r.nullPose[place] = true; }});
        for (const auto angle : kAngles) {
            for (const double beyond : {JustAbove(180.0), -JustAbove(180.0), 1e9, kInf, -kInf}) {
                faults.push_back({pose + " angle " + std::to_string(beyond),
                                  [=](WobjCalibRequest& r) { r.poses[place].Frame.*angle = beyond; }});
            }
        }
    }
    if (call.takesUser) faults.push_back({"user null", [](WobjCalibRequest& r) { r.nullUser = true; }});
    faults.push_back({"frame null", [](WobjCalibRequest& r) { r.nullFrame = true; }});
    return faults;
}

struct SolverFault
{
    const char* name;
    KineResult code;
    std::function<void(WobjCalibRequest&)> make;
};

// Those that a solver finds in the points, all with angles and pointers in order.
std::vector<SolverFault> SolverFaults(const WobjCalib& call)
{
    std::vector<SolverFault> faults = {{"all in one place", KINE_ERR_CALIB_POINTS_CLOSE,
                                        [](WobjCalibRequest& r) { r.poses[1] = r.poses[2] = r.poses[0]; }}};
    if (call == kUser2P) {
        faults.push_back({"vertical", KINE_ERR_CALIB_POINTS_CLOSE, [](WobjCalibRequest& r) {
                              r.poses[1] = r.poses[0];
                              r.poses[1].Frame.Z += 100.0;
                          }});
        return faults;
    }
    faults.push_back({"on one line", KINE_ERR_CALIB_COLLINEAR, [](WobjCalibRequest& r) {
                          r.poses[1] = r.poses[2] = r.poses[0];
                          r.poses[1].Frame.X += 100.0;
                          r.poses[2].Frame.X += 200.0;
                      }});
    if (call == kCircle) {
        faults.push_back({"too small", KINE_ERR_CALIB_3, [](WobjCalibRequest& r) {
                              r.poses[1] = r.poses[2] = r.poses[0];
                              r.poses[1].Frame.X += 0.01;
                              r.poses[2].Frame.Y += 0.01;
                          }});
    }
    if (call == kUnFixObject) {
        faults.push_back(
            {"unit not usable", KINE_ERR_CALIB_POINTS_CLOSE, [](WobjCalibRequest& r) { r.unit = -1; }});
    }
    return faults;
}

}  // namespace

TEST(wobj_calibrations, refused_record_is_0x6010_and_keeps_the_results)
{
    SetUpPlainUnit();
    for (const WobjCalib& call : kWobjCalibs) {
        Solved(call, GoodWobjRequest());
        for (const Fault& fault : RecordFaults(call)) {
            SCOPED_TRACE(fault.name);
            WobjCalibRequest request = GoodWobjRequest();
            fault.make(request);
            ExpectRefused(call, request, KINE_ERR_POSE);
        }
    }
}

TEST(wobj_calibrations, solver_refusal_has_its_code_and_keeps_the_results)
{
    SetUpPlainUnit();
    for (const WobjCalib& call : kWobjCalibs) {
        for (const SolverFault& fault : SolverFaults(call)) {
            SCOPED_TRACE(fault.name);
            WobjCalibRequest request = GoodWobjRequest();
            fault.make(request);
            ExpectRefused(call, request, fault.code);
            request.nullTilt = true;
            ExpectRefused(call, request, fault.code);
        }
    }
}

TEST(wobj_calibrations, refused_record_answers_before_the_solver)
{
    SetUpPlainUnit();
    for (const WobjCalib& call : kWobjCalibs) {
        for (const SolverFault& solver : SolverFaults(call)) {
            for (const Fault& record : RecordFaults(call)) {
                SCOPED_TRACE(record.name + " and " + solver.name);
                WobjCalibRequest request = GoodWobjRequest();
                solver.make(request);
                record.make(request);
                ExpectRefused(call, request, KINE_ERR_POSE);
            }
        }
    }
}

TEST(wobj_calibrations, everything_null_is_0x6010)
{
    for (const WobjCalib& call : kWobjCalibs) {
        WobjCalibRequest request;
        request.nullPose = {true, true, true};
        request.nullUser = request.nullFrame = request.nullTilt = true;
        request.unit = -1;
        ExpectRefused(call, request, KINE_ERR_POSE);
    }
}

TEST(wobj_calibrations, null_tilt_is_left_out)
{
    SetUpPlainUnit();
    for (const WobjCalib& call : kWobjCalibs) {
        const WobjCalibOutcome expected = Solved(call, GoodWobjRequest());
        WobjCalibRequest request = GoodWobjRequest();
        request.nullTilt = true;
        const WobjCalibOutcome result = Solved(call, request);
        EXPECT_TRUE(SameBits(result.frame, expected.frame)) << call.name;
        EXPECT_TRUE(IsUntouched(result.tilt)) << call.name;
    }
}

TEST(wobj_calibrations, angles_of_exactly_180_and_of_nan_are_accepted)
{
    SetUpPlainUnit();
    for (const WobjCalib& call : kWobjCalibs) {
        const WobjCalibOutcome expected = Solved(call, GoodWobjRequest());
        for (std::size_t place = 0; place < call.poses; ++place) {
            for (const auto angle : kAngles) {
                for (const double value : {180.0, -180.0, JustBelow(180.0), kNan, -kNan, 0.0}) {
                    SCOPED_TRACE(::testing::Message() << call.name << " pose " << place << ": " << value);
                    WobjCalibRequest request = GoodWobjRequest();
                    request.poses[place].Frame.*angle = value;
                    EXPECT_TRUE(SameResult(Solved(call, request), expected));
                }
            }
        }
    }
}

TEST(wobj_calibrations, success_prints_nothing)
{
    SetUpPlainUnit();
    EXPECT_EQ(PrintedBy([] {
                  for (const WobjCalib& call : kWobjCalibs) Solved(call, GoodWobjRequest());
              }),
              "");
}

TEST(wobj_calibrations, angles_of_the_user_frame_are_not_checked)
{
    for (const WobjCalib& call : {kExtObject, kGripObject}) {
        for (const auto angle : kAngles) {
            for (const double any : {JustAbove(180.0), -270.0, 1e9, 1e300, kInf, -kInf, kNan}) {
                SCOPED_TRACE(::testing::Message() << call.name << ' ' << any);
                WobjCalibRequest request = GoodWobjRequest();
                request.user.*angle = any;
                Solved(call, request);
                // The points of a held object are NaN in a frame that is, and pass the limits as such.
                request.poses[1] = request.poses[0];
                if (std::isfinite(any) || call == kExtObject) {
                    ExpectRefused(call, request, KINE_ERR_CALIB_POINTS_CLOSE);
                } else {
                    Solved(call, request);
                }
            }
        }
    }
}
