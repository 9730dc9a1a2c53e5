// What the work-object calibrations refuse before they solve anything, in which order, and that a refusal
// leaves the results alone. The limits of the solutions have tests of their own.
#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "support/taught_points.h"

using namespace kine::test;

namespace {

struct Fault
{
    std::string name;
    std::function<void(TaughtRequest&)> make;
};

// All of them are KINE_ERR_POSE.
std::vector<Fault> RecordFaults(const WobjCalib& call)
{
    std::vector<Fault> faults;
    for (std::size_t place = 0; place < call.points; ++place) {
        const std::string pose = "pose " + std::to_string(place);
        faults.push_back({pose + " null", [=](TaughtRequest& r) { r.nullPoint[place] = true; }});
        for (const auto angle : kAngles) {
            for (const double beyond : {JustAbove(180.0), -JustAbove(180.0), 1e9, kInf, -kInf}) {
                faults.push_back({pose + " angle " + std::to_string(beyond),
                                  [=](TaughtRequest& r) { r.points[place].Frame.*angle = beyond; }});
            }
        }
    }
    if (call.takesUser) faults.push_back({"user null", [](TaughtRequest& r) { r.nullUser = true; }});
    faults.push_back({"frame null", [](TaughtRequest& r) { r.nullFrame = true; }});
    return faults;
}

struct SolverFault
{
    const char* name;
    KineResult code;
    std::function<void(TaughtRequest&)> make;
};

// Those that a solver finds in the points, all with angles and pointers in order.
std::vector<SolverFault> SolverFaults(const WobjCalib& call)
{
    std::vector<SolverFault> faults = {{"all in one place", KINE_ERR_CALIB_POINTS_CLOSE,
                                        [](TaughtRequest& r) { r.points[1] = r.points[2] = r.points[0]; }}};
    if (call == kUser2P) {
        faults.push_back({"vertical", KINE_ERR_CALIB_POINTS_CLOSE, [](TaughtRequest& r) {
                              r.points[1] = r.points[0];
                              r.points[1].Frame.Z += 100.0;
                          }});
        return faults;
    }
    faults.push_back({"on one line", KINE_ERR_CALIB_COLLINEAR, [](TaughtRequest& r) {
                          r.points[1] = r.points[2] = r.points[0];
                          r.points[1].Frame.X += 100.0;
                          r.points[2].Frame.X += 200.0;
                      }});
    if (call == kCircle) {
        faults.push_back({"too small", KINE_ERR_CALIB_3, [](TaughtRequest& r) {
                              r.points[1] = r.points[2] = r.points[0];
                              r.points[1].Frame.X += 0.01;
                              r.points[2].Frame.Y += 0.01;
                          }});
    }
    if (call == kUnFixObject) {
        faults.push_back(
            {"unit not usable", KINE_ERR_CALIB_POINTS_CLOSE, [](TaughtRequest& r) { r.unit = -1; }});
    }
    return faults;
}

}  // namespace

TEST(wobj_calibration, refused_record_is_0x6010_and_keeps_the_results)
{
    SetUpPlainUnit();
    for (const WobjCalib& call : kWobjCalibs) {
        Calibrated(call, GoodTaughtRequest());
        for (const Fault& fault : RecordFaults(call)) {
            SCOPED_TRACE(fault.name);
            TaughtRequest request = GoodTaughtRequest();
            fault.make(request);
            ExpectRefused(call, request, KINE_ERR_POSE);
        }
    }
}

TEST(wobj_calibration, solver_refusal_has_its_code_and_keeps_the_results)
{
    SetUpPlainUnit();
    for (const WobjCalib& call : kWobjCalibs) {
        for (const SolverFault& fault : SolverFaults(call)) {
            SCOPED_TRACE(fault.name);
            TaughtRequest request = GoodTaughtRequest();
            fault.make(request);
            ExpectRefused(call, request, fault.code);
            request.nullTilt = true;
            ExpectRefused(call, request, fault.code);
        }
    }
}

TEST(wobj_calibration, refused_record_answers_before_the_solver)
{
    SetUpPlainUnit();
    for (const WobjCalib& call : kWobjCalibs) {
        for (const SolverFault& solver : SolverFaults(call)) {
            for (const Fault& record : RecordFaults(call)) {
                SCOPED_TRACE(record.name + " and " + solver.name);
                TaughtRequest request = GoodTaughtRequest();
                solver.make(request);
                record.make(request);
                ExpectRefused(call, request, KINE_ERR_POSE);
            }
        }
    }
}

TEST(wobj_calibration, everything_null_is_0x6010)
{
    for (const WobjCalib& call : kWobjCalibs) {
        TaughtRequest request;
        request.nullPoint = {true, true, true};
        request.nullUser = request.nullFrame = request.nullTilt = true;
        request.unit = -1;
        ExpectRefused(call, request, KINE_ERR_POSE);
    }
}

TEST(wobj_calibration, null_tilt_is_left_out)
{
    SetUpPlainUnit();
    for (const WobjCalib& call : kWobjCalibs) {
        const WobjOutcome expected = Calibrated(call, GoodTaughtRequest());
        TaughtRequest request = GoodTaughtRequest();
        request.nullTilt = true;
        const WobjOutcome result = Calibrated(call, request);
        EXPECT_TRUE(SameBits(result.frame, expected.frame)) << call.name;
        EXPECT_TRUE(IsUntouched(result.tilt)) << call.name;
    }
}

TEST(wobj_calibration, angles_of_exactly_180_and_of_nan_are_accepted)
{
    SetUpPlainUnit();
    for (const WobjCalib& call : kWobjCalibs) {
        const WobjOutcome expected = Calibrated(call, GoodTaughtRequest());
        for (std::size_t place = 0; place < call.points; ++place) {
            for (const auto angle : kAngles) {
                for (const double value : {180.0, -180.0, JustBelow(180.0), kNan, -kNan, 0.0}) {
                    SCOPED_TRACE(::testing::Message() << call.name << " pose " << place << ": " << value);
                    TaughtRequest request = GoodTaughtRequest();
                    request.points[place].Frame.*angle = value;
                    EXPECT_TRUE(SameResult(Calibrated(call, request), expected));
                }
            }
        }
    }
}

TEST(wobj_calibration, success_prints_nothing)
{
    SetUpPlainUnit();
    EXPECT_EQ(PrintedBy([] {
                  for (const WobjCalib& call : kWobjCalibs) Calibrated(call, GoodTaughtRequest());
              }),
              "");
}

TEST(wobj_calibration, angles_of_the_user_frame_are_not_checked)
{
    for (const WobjCalib& call : {kExtObject, kGripObject}) {
        for (const auto angle : kAngles) {
            for (const double any : {JustAbove(180.0), -270.0, 1e9, 1e300, kInf, -kInf, kNan}) {
                SCOPED_TRACE(::testing::Message() << call.name << ' ' << any);
                TaughtRequest request = GoodTaughtRequest();
                request.user.*angle = any;
                Calibrated(call, request);
                // The points of a held object are NaN in a frame that is, and pass the limits as such.
                request.points[1] = request.points[0];
                if (std::isfinite(any) || call == kExtObject) {
                    ExpectRefused(call, request, KINE_ERR_CALIB_POINTS_CLOSE);
                } else {
                    Calibrated(call, request);
                }
            }
        }
    }
}
