// Closed form and refinement of the four-axis arms.
//
// th: flange heading; px, py: flange in the plane; k: cosine of the elbow angle; e: error of the tool point,
// millimetres and radians side by side; E: sum of its squares.
#include "models/four_axis_inverse.h"

#include <algorithm>
#include <cmath>

#include "models/four_axis_geometry.h"

namespace kine {

namespace {

// Cosine of the elbow angle; equal fails, NaN fails. Up to here, on both sides, the arm counts as stretched.
constexpr double kMaxElbowCosine = 1.00001;

constexpr int kMaxNewtonSteps = 5;
// Strictly below, the target is met.
constexpr double kMaxSquaredError = 1e-12;

struct ToolError
{
    std::array<double, 4> e;
    double squared;
};

ToolError ToolErrorOf(const Pose& target, const FourAxisState& state)
{
    const Pose current = FourAxisToolPose(state);
    ToolError error{};
    error.e = {target.x - current.x, target.y - current.y, target.z - current.z, target.a - current.a};
    for (const double component : error.e) error.squared += component * component;
    return error;
}

// Moves the axes by the correction, and their sines with them. Axis 3, the screw, has none.
void Advance(FourAngles& q, FourSines& sines, const FourAngles& correction)
{
    for (std::size_t i = 0; i < q.size(); ++i) q[i] += correction[i];
    const auto isSmall = [](double angle) { return std::fabs(angle) <= kMaxSeriesStep; };
    if (isSmall(correction[0]) && isSmall(correction[1]) && isSmall(correction[3])) {
        sines = {Advanced(sines.q1, correction[0]), Advanced(sines.q2, correction[1]),
                 Advanced(sines.q4, correction[3])};
    } else {
        sines = FourSinesOf(q);
    }
}

}  // namespace

KineResult FourAxisClosedForm(const FourAxisParams& params, const Pose& target, const Pose& tool,
                              std::int32_t posture, FourAxisSeed& seed)
{
    if (posture != 1 && posture != -1) return KINE_ERR_CONFIG;

    const double th = target.a - tool.a;
    const auto [s, c] = SinCosOf(th);
    const double px = target.x - c * tool.x + s * tool.y;
    const double py = target.y - s * tool.x - c * tool.y;
    const double k =
        (px * px + py * py - params.l1 * params.l1 - params.l2 * params.l2) / (2.0 * params.l1 * params.l2);
    if (!(std::fabs(k) < kMaxElbowCosine)) return KINE_ERR_IK_REACH;

    if (std::fabs(k) < 1.0) {
        const double elbowSine = posture * std::sqrt(1.0 - k * k);
        const double m = params.l1 + params.l2 * k;
        const double n = params.l2 * elbowSine;
        seed.elbow = posture * SafeAcos(k);
        seed.q1 = std::atan2(m * py - n * px, m * px + n * py);
    } else {
        // A folded arm (k near -1) counts as stretched too.
        seed.elbow = 0.0;
        seed.q1 = std::atan2(py, px);
    }
    seed.q3 = kTwoPi * (target.z - params.z0 - tool.z) / params.lead;
    seed.q4 = th - seed.q1 - seed.elbow;
    return KINE_OK;
}

KineResult FourAxisRefine(const FourAxisParams& params, const Pose& target, const Pose& tool, FourAngles& q)
{
    const FourAxisTool onFlange = FourAxisToolOf(tool);
    FourSines sines = FourSinesOf(q);
    FourAxisState state = FourAxisStateOf(params, sines, q[2], onFlange);
    ToolError error = ToolErrorOf(target, state);
    for (int step = 0; step < kMaxNewtonSteps && !(error.squared < kMaxSquaredError); ++step) {
        FourAngles correction{};
        if (const KineResult code = Jacobian4Solve(FourAxisJacobian(params, state), error.e, correction))
            return code;
        Advance(q, sines, correction);
        state = FourAxisStateOf(params, sines, q[2], onFlange);
        error = ToolErrorOf(target, state);
    }
    return KINE_OK;
}

KineResult WriteFourAxes(const FourAngles& q, std::array<double, 8>& axes)
{
    // The axes leave in degrees and must be finite there too.
    const bool isFinite = std::ranges::all_of(q, [](double angle) { return std::isfinite(angle * RAD2DEG); });
    if (!isFinite) return KINE_ERR_IK_REACH;
    axes = {q[0], q[1], q[2], q[3], 0.0, 0.0, 0.0, 0.0};
    return KINE_OK;
}

}  // namespace kine
