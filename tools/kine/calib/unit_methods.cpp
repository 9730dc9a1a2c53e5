// Mechanical units: the axes of a positioner from one mark that they turn, and the base of a robot on a
// track.
#include <array>
#include <cmath>

#include "calib/method.h"

namespace kine_cli {
namespace {

constexpr double kTurn = 360.0;

// The library finds the centre of the mark's circle from X and Y alone. Where the axis leans further than 60
// degrees from Z, or the first two positions lie so that their bisector runs within 12 degrees of the XZ
// plane, that loses digits, in the end all of them; then the positions are shown to it from a frame of their
// own.
constexpr double kLeastUpright = 0.5;
constexpr double kLeastAcross = 0.2;

struct View
{
    KineFrame frame{};
    bool isTurned = false;
};

View ViewOf(const Poses& p)
{
    const Vec3 chord = PositionOf(p[1].Frame) - PositionOf(p[0].Frame);
    const Vec3 normal = Cross(chord, PositionOf(p[2].Frame) - PositionOf(p[0].Frame));
    const Vec3 bisector = Cross(normal, chord);
    View view;
    if (std::fabs(normal.z) >= kLeastUpright * Norm(normal) &&
        std::fabs(bisector.y) >= kLeastAcross * Norm(bisector)) {
        return view;
    }
    // X along the chord and Z along the axis. What is too close for a frame is too close for the call too.
    view.isTurned = Kine_CalcExtWobj_UserPrm_3P(&p[0], &p[1], &p[2], &view.frame, nullptr) == KINE_OK;
    return view;
}

KinePose Seen(const View& view, const KinePose& pose)
{
    KineWobj from{};
    from.UFFix = 1;
    from.UFrame = view.frame;
    KinePose seen = pose;
    // Only angles beyond 180 degrees are refused, and these the calibration refuses as well.
    (void)Kine_WorldPosToFixWobjPos(&pose, &from, &seen);
    return seen;
}

// `inner`, given in `outer`, seen from where `outer` is given.
KineFrame Product(const KineFrame& outer, KineFrame inner)
{
    KinePose pose{};
    pose.Frame = outer;
    for (double* angle : {&pose.Frame.A, &pose.Frame.B, &pose.Frame.C, &inner.A, &inner.B, &inner.C})
        *angle = std::remainder(*angle, kTurn);
    KinePose product{};
    (void)Kine_ToolCoordOffset(&pose, &inner, &product);  // the angles fit
    return product.Frame;
}

double ValueOf(const KinePose& pose, std::size_t driver) { return pose.ExtAxis[driver]; }

// The places of the mark on its axis, whose frame in the frame of the poses is `axis` at 0.
std::vector<Vec3> MarkPlaces(const KineFrame& axis, const Poses& poses, std::size_t driver)
{
    std::vector<Vec3> places;
    for (const KinePose& pose : poses) {
        places.push_back(TurnAboutZ(-Radians(ValueOf(pose, driver)), SeenFrom(axis, PositionOf(pose.Frame))));
    }
    return places;
}

Method MarkMethod(const std::string& name, const std::string& call)
{
    Method method;
    method.name = name;
    method.call = call;
    method.roles = {"mark 1", "mark 2", "mark 3"};
    method.alike = 3;
    method.comparesDirections = Directions::kEvery;
    return method;
}

}  // namespace

Method FirstAxisMethod(std::int32_t unit, std::optional<std::size_t> driver)
{
    Method method = MarkMethod("first", "Kine_CalcPositionerJ1Prm_3P");
    method.residualOf = "distance of the mark from its mean place on the axis";
    method.followsOrder = true;
    method.solve = [unit](const Poses& p) {
        const View view = ViewOf(p);
        const std::array<KinePose, 3> seen = {Seen(view, p[0]), Seen(view, p[1]), Seen(view, p[2])};
        Solution solution;
        solution.code = Kine_CalcPositionerJ1Prm_3P(unit, &seen[0], &seen[1], &seen[2], &solution.frame);
        if (view.isTurned && solution.code == KINE_OK) solution.frame = Product(view.frame, solution.frame);
        return solution;
    };
    method.axisValue = [driver](const KinePose& pose) { return ValueOf(pose, driver.value_or(0)); };
    method.places = [driver](const KineFrame& found, const Poses& poses) {
        return MarkPlaces(found, poses, driver.value_or(0));
    };
    return method;
}

Method FurtherAxisMethod(std::int32_t unit, std::int32_t axis, std::optional<std::size_t> driver,
                         const KineFrame& reference)
{
    Method method = MarkMethod("further", "Kine_CalcPositionerJnPrm_3P");
    method.residualOf = "distance of the mark from its mean place on the axis";
    method.followsOrder = true;
    method.solve = [unit, axis, driver, reference](const Poses& p) {
        const View view = ViewOf(p);
        const std::array<KinePose, 3> seen = {Seen(view, p[0]), Seen(view, p[1]), Seen(view, p[2])};
        KineFrame given = reference;
        if (view.isTurned) {
            KinePose pose{};
            pose.Frame = Product(reference, KineFrame{});
            given = Seen(view, pose).Frame;
        }
        // The call turns the reference by the value of the axis, taken as radians: turned back beforehand,
        // the frame counts as it stands.
        const double value = driver ? ValueOf(p[0], *driver) : 0.0;
        if (value != 0.0) {
            KineFrame back{};
            back.A = -std::remainder(Degrees(value), kTurn);
            given = Product(back, given);
        }
        Solution solution;
        solution.code =
            Kine_CalcPositionerJnPrm_3P(unit, axis, &seen[0], &seen[1], &seen[2], &given, &solution.frame);
        return solution;
    };
    method.axisValue = [driver](const KinePose& pose) { return ValueOf(pose, driver.value_or(0)); };
    method.places = [driver, reference](const KineFrame& found, const Poses& poses) {
        return MarkPlaces(Product(reference, found), poses, driver.value_or(0));
    };
    return method;
}

Method TrackMethod(std::int32_t unit, std::optional<std::size_t> driver)
{
    Method method = MarkMethod("3p", "Kine_CalcRobotBasePrm_3P");
    method.residualOf = "distance of the mark from its mean place beside the track";
    method.comparesPositions = false;
    method.teach = Teach::kTipInBase;
    method.solve = [unit](const Poses& p) {
        Solution solution;
        KineCalibError report{};
        solution.code = Kine_CalcRobotBasePrm_3P(unit, &p[0], &p[1], &p[2], &solution.frame, &report);
        if (solution.code == KINE_OK) solution.report = report;
        return solution;
    };
    method.axisValue = [driver](const KinePose& pose) { return ValueOf(pose, driver.value_or(0)); };
    // By the rotation alone: the fit of the call stretches the points too, which hides an error of scale.
    method.places = [driver](const KineFrame& found, const Poses& poses) {
        std::vector<Vec3> places;
        for (const KinePose& pose : poses) {
            const Vec3 travel = {ValueOf(pose, driver.value_or(0)), 0.0, 0.0};
            places.push_back(Turn(RotationOf(found), PositionOf(pose.Frame)) + travel);
        }
        return places;
    };
    return method;
}

}  // namespace kine_cli
