// Tools: one fixed point touched by a tool on the robot, or a stationary tool touched by the robot.
#include <limits>

#include "calib/method.h"
#include "failure.h"

namespace kine_cli {
namespace {

using Call3P = KineResult (*)(const KinePose*, const KinePose*, const KinePose*, KineFrame*, KineCalibError*);
using Call3Pzx = KineResult (*)(const KinePose*, const KinePose*, const KinePose*, const KinePose*,
                                const KinePose*, const KinePose*, KineFrame*, KineCalibError*);

// Where the found frame puts the tip on the flange.
using TipOf = std::function<Vec3(const KineFrame& found, const Poses&)>;

// A report that the library has written differs from this one.
KineCalibError Unwritten()
{
    constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();
    return {kNothing, kNothing, kNothing};
}

void TakeReport(const KineCalibError& report, Solution& solution)
{
    // Largest is a maximum from 0 and never NaN once it is written.
    if (report.Largest == report.Largest) solution.report = report;
}

std::vector<std::string> Touches(std::size_t count)
{
    std::vector<std::string> roles;
    for (std::size_t i = 1; i <= count; ++i) roles.push_back("touch " + std::to_string(i));
    return roles;
}

Method TouchingMethod(const std::string& name, const std::string& call, std::size_t touches, bool isPlanar,
                      const TipOf& tipOf)
{
    Method method;
    method.name = name;
    method.call = call;
    method.roles = Touches(touches);
    method.alike = touches;
    method.residualOf = "distance of the tip from its mean place over all touches";
    method.places = [tipOf](const KineFrame& found, const Poses& poses) {
        return TipPlaces(tipOf(found, poses), poses);
    };
    method.turnsTool = true;
    method.teach = Teach::kFlange;
    method.isPlanar = isPlanar;
    return method;
}

Method WithThree(Method method, Call3P call)
{
    method.solve = [call](const Poses& p) {
        Solution solution;
        KineCalibError report = Unwritten();
        solution.code = call(&p[0], &p[1], &p[2], &solution.frame, &report);
        TakeReport(report, solution);
        return solution;
    };
    return method;
}

Method WithOrientation(Method method, Call3Pzx call)
{
    method.roles.insert(method.roles.end(), {"origin", "z", "x"});
    method.comparesDirections = Directions::kEvery;
    method.solve = [call](const Poses& p) {
        Solution solution;
        KineCalibError report = Unwritten();
        solution.code = call(&p[0], &p[1], &p[2], &p[3], &p[4], &p[5], &solution.frame, &report);
        TakeReport(report, solution);
        return solution;
    };
    return method;
}

Method HeldFive()
{
    const TipOf tipOf = [](const KineFrame& found, const Poses&) { return PositionOf(found); };
    Method method = TouchingMethod("5p", "Kine_CalcGripToolPrm_5P", 5, false, tipOf);
    method.solve = [](const Poses& p) {
        Solution solution;
        KineCalibError report = Unwritten();
        solution.code = Kine_CalcGripToolPrm_5P(&p[0], &p[1], &p[2], &p[3], &p[4], &solution.frame, &report);
        TakeReport(report, solution);
        return solution;
    };
    return method;
}

Method HeldTwo(bool isPlanar)
{
    const TipOf tipOf = [](const KineFrame& found, const Poses&) { return PositionOf(found); };
    Method method = TouchingMethod("2p", "Kine_CalcGripToolPrm_Scara2P", 2, isPlanar, tipOf);
    method.solve = [](const Poses& p) {
        Solution solution;
        solution.code = Kine_CalcGripToolPrm_Scara2P(&p[0], &p[1], &solution.frame);
        return solution;
    };
    return method;
}

// The point that the tip of two touches stands at: a stationary tool from as few as a four-axis arm can do
// with.
Method StationaryTwo()
{
    Method method = HeldTwo(true);
    const auto solve = method.solve;
    method.solve = [solve](const Poses& p) {
        Solution solution = solve(p);
        if (solution.code != KINE_OK) return solution;
        const Vec3 place = TipPlaces(PositionOf(solution.frame), p).front();
        solution.frame = KineFrame{};
        SetPosition(solution.frame, place);
        return solution;
    };
    return method;
}

// A point or a frame that is touched with a calibrated tip.
Method TouchedPlace(const std::string& name, const std::string& call)
{
    Method method;
    method.name = name;
    method.call = call;
    method.roles = {"origin"};
    method.alike = 1;
    method.exactWith = 2;
    method.residualOf = "distance of the touched origin from its mean place";
    method.places = [](const KineFrame&, const Poses& poses) { return Positions(poses); };
    return method;
}

void AddFourAxisNotes(std::vector<Method>& methods, const std::string& height)
{
    for (Method& method : methods) {
        if (method.isPlanar) method.notes.push_back(height);
    }
}

}  // namespace

std::vector<Vec3> TipPlaces(const Vec3& tip, const Poses& poses)
{
    std::vector<Vec3> places;
    for (const KinePose& pose : poses)
        places.push_back(Turn(RotationOf(pose.Frame), tip) + PositionOf(pose.Frame));
    return places;
}

std::vector<Vec3> Positions(const Poses& poses)
{
    std::vector<Vec3> places;
    for (const KinePose& pose : poses) places.push_back(PositionOf(pose.Frame));
    return places;
}

std::vector<Method> HeldToolMethods(std::uint32_t armType)
{
    const bool isPlanar = armType != KINE_ARM_SIX_AXIS;
    const TipOf tipOf = [](const KineFrame& found, const Poses&) { return PositionOf(found); };
    Method three = WithThree(TouchingMethod("3p", "Kine_CalcGripToolPrm_3P", 3, isPlanar, tipOf),
                             &Kine_CalcGripToolPrm_3P);
    Method frame = WithOrientation(TouchingMethod("3pzx", "Kine_CalcGripToolPrm_3PZX", 3, isPlanar, tipOf),
                                   &Kine_CalcGripToolPrm_3PZX);
    if (isPlanar) three.smaller = frame.smaller = std::make_shared<Method>(HeldTwo(true));
    Method five = HeldFive();
    five.smaller = std::make_shared<Method>(three);
    five.suitsArm = !isPlanar;
    Method two = HeldTwo(isPlanar);
    two.suitsArm = isPlanar;
    std::vector<Method> methods = {two, three, frame, five};
    AddFourAxisNotes(methods,
                     "A four-axis arm does not find the Z of its tool: it is 0 here, measure it otherwise.");
    return methods;
}

std::vector<Method> StationaryToolMethods(std::uint32_t armType)
{
    const bool isPlanar = armType != KINE_ARM_SIX_AXIS;
    // Found is the touched point itself; the tip on the flange follows from the first touch, or from the
    // origin pose.
    const auto tipAt = [](std::size_t touch) -> TipOf {
        return [touch](const KineFrame& found, const Poses& p) {
            return SeenFrom(p[touch].Frame, PositionOf(found));
        };
    };
    Method three = WithThree(TouchingMethod("3p", "Kine_CalcExtToolPrm_3P", 3, isPlanar, tipAt(0)),
                             &Kine_CalcExtToolPrm_3P);
    Method frame = WithOrientation(TouchingMethod("3pzx", "Kine_CalcExtToolPrm_3PZX", 3, isPlanar, tipAt(3)),
                                   &Kine_CalcExtToolPrm_3PZX);
    // The place of the frame is where the tip is in the origin pose, not that of the touches: what two
    // touches find cannot be compared with it.
    if (isPlanar) three.smaller = std::make_shared<Method>(StationaryTwo());
    three.comparesInPlane = isPlanar;
    three.teach = frame.teach = Teach::kFlangeInWorld;
    Method point = TouchedPlace("1p", "Kine_CalcExtToolPrm_1P");
    point.solve = [](const Poses& p) {
        Solution solution;
        solution.code = Kine_CalcExtToolPrm_1P(&p[0], &solution.frame);
        return solution;
    };
    Method touchedFrame = TouchedPlace("1pzx", "Kine_CalcExtToolPrm_1PZX");
    touchedFrame.roles = {"origin", "z", "x"};
    touchedFrame.comparesDirections = Directions::kEvery;
    touchedFrame.solve = [](const Poses& p) {
        Solution solution;
        solution.code = Kine_CalcExtToolPrm_1PZX(&p[0], &p[1], &p[2], &solution.frame);
        return solution;
    };
    std::vector<Method> methods = {point, touchedFrame, three, frame};
    AddFourAxisNotes(
        methods,
        "A four-axis arm does not find the height of the tool: Z is that of the flange, measure it "
        "otherwise.");
    return methods;
}

const Method& ChosenMethod(const std::vector<Method>& methods, const std::string& name, std::size_t points)
{
    std::string list;
    const Method* chosen = nullptr;
    std::size_t fitting = 0;
    for (const Method& method : methods) {
        if (method.name == name) return method;
        if (!method.suitsArm) continue;
        list += (list.empty() ? "" : ", ") + method.name + " (" + std::to_string(method.roles.size()) +
                (method.roles.size() == 1 ? " point)" : " points)");
        if (methods.size() > 1 && method.roles.size() != points) continue;
        chosen = &method;
        ++fitting;
    }
    if (!name.empty()) FailUsage("--method " + name + " is none of this calibration; there are: " + list);
    if (fitting == 1) return *chosen;
    FailUsage("say with --method what " + std::to_string(points) +
              (points == 1 ? " point is" : " points are") + "; there are: " + list);
}

}  // namespace kine_cli
