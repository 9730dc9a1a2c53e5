// Work objects: frames through touched points.
#include "calib/method.h"

namespace kine_cli {
namespace {

using UserCall3P = KineResult (*)(const KinePose*, const KinePose*, const KinePose*, KineFrame*, double*);
using ObjectCall3P = KineResult (*)(const KinePose*, const KinePose*, const KinePose*, const KineFrame*,
                                    KineFrame*, double*);

Method PlaneMethod(const std::string& call)
{
    Method method;
    method.name = "3p";
    method.call = call;
    method.roles = {"origin", "x", "xy"};
    // Only the third point has others like it: every further point of the plane.
    method.firstAlike = 2;
    method.alike = 1;
    method.figure = Figure::kPlane;
    method.exactWith = 3;
    method.residualOf = "distance from the plane that fits all points best";
    method.places = [](const KineFrame&, const Poses& poses) { return Positions(poses); };
    method.comparesDirections = Directions::kEvery;
    return method;
}

Method UserPlane(const std::string& name, UserCall3P call)
{
    Method method = PlaneMethod(name);
    method.solve = [call](const Poses& p) {
        Solution solution;
        double tilt = 0.0;
        solution.code = call(&p[0], &p[1], &p[2], &solution.frame, &tilt);
        solution.tiltRad = tilt;
        return solution;
    };
    return method;
}

Method ObjectPlane(const std::string& name, ObjectCall3P call, const KineFrame& user)
{
    Method method = PlaneMethod(name);
    method.solve = [call, user](const Poses& p) {
        Solution solution;
        double tilt = 0.0;
        solution.code = call(&p[0], &p[1], &p[2], &user, &solution.frame, &tilt);
        solution.tiltRad = tilt;
        return solution;
    };
    return method;
}

Method UserLine()
{
    Method method = PlaneMethod("Kine_CalcExtWobj_UserPrm_2P");
    method.name = "2p";
    method.roles = {"origin", "x"};
    method.firstAlike = 1;
    method.figure = Figure::kLine;
    method.exactWith = 2;
    method.residualOf = "distance from the line that fits all points best";
    method.solve = [](const Poses& p) {
        Solution solution;
        double tilt = 0.0;
        solution.code = Kine_CalcExtWobj_UserPrm_2P(&p[0], &p[1], &solution.frame, &tilt);
        solution.tiltRad = tilt;
        return solution;
    };
    return method;
}

Method UserCircle()
{
    Method method = UserPlane("Kine_CalcExtWobj_UserPrm_Cirle3P", &Kine_CalcExtWobj_UserPrm_Cirle3P);
    method.name = "circle";
    method.roles = {"rim 1", "rim 2", "rim 3"};
    method.firstAlike = 0;
    method.alike = 3;
    method.figure = Figure::kCircle;
    method.residualOf = "distance from the circle that fits all points best";
    // X points at the first point of the rim and says nothing about the others.
    method.comparesDirections = Directions::kOnlyZ;
    return method;
}

// A position of the world seen from the last axis of a unit, by the library: the origin of an object frame.
KinePose OnUnit(std::int32_t unit, const KinePose& pose)
{
    constexpr double kStep = 100.0;
    KinePose x = pose;
    KinePose xy = pose;
    x.Frame.X += kStep;
    xy.Frame.Y += kStep;
    KinePose seen{};
    double tilt = 0.0;
    (void)Kine_CalcUnFixWobj_ObjPrm_3P(unit, &pose, &x, &xy, &seen.Frame,
                                       &tilt);  // zero as in the call itself
    return seen;
}

}  // namespace

std::vector<Method> FixedUserMethods()
{
    return {UserLine(), UserPlane("Kine_CalcExtWobj_UserPrm_3P", &Kine_CalcExtWobj_UserPrm_3P), UserCircle()};
}

std::vector<Method> HeldUserMethods()
{
    Method method = UserPlane("Kine_CalcGripWobj_UserPrm_3P", &Kine_CalcGripWobj_UserPrm_3P);
    method.teach = Teach::kStationaryTipInFlange;
    return {method};
}

std::vector<Method> FixedObjectMethods(const KineFrame& user)
{
    return {ObjectPlane("Kine_CalcExtWobj_ObjPrm_3P", &Kine_CalcExtWobj_ObjPrm_3P, user)};
}

std::vector<Method> HeldObjectMethods(const KineFrame& user)
{
    Method method = ObjectPlane("Kine_CalcGripWobj_ObjPrm_3P", &Kine_CalcGripWobj_ObjPrm_3P, user);
    method.teach = Teach::kStationaryTipInFlange;
    return {method};
}

std::vector<Method> UnitObjectMethods(std::int32_t unit)
{
    Method method = PlaneMethod("Kine_CalcUnFixWobj_ObjPrm_3P");
    method.solve = [unit](const Poses& p) {
        Solution solution;
        double tilt = 0.0;
        solution.code = Kine_CalcUnFixWobj_ObjPrm_3P(unit, &p[0], &p[1], &p[2], &solution.frame, &tilt);
        solution.tiltRad = tilt;
        return solution;
    };
    method.seenFrom = [unit](const Poses& poses) {
        Poses seen;
        for (const KinePose& pose : poses) seen.push_back(OnUnit(unit, pose));
        return seen;
    };
    method.solveSeen = UserPlane("", &Kine_CalcExtWobj_UserPrm_3P).solve;
    return {method};
}

}  // namespace kine_cli
