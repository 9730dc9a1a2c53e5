// The inner steps on the calibrated wrist arm with gravity and on the four-axis arm with tilts.
#include "inner_steps.h"

#include <stdexcept>

#include "math/matrix6.h"
#include "math/transform.h"
#include "models/four_axis_geometry.h"
#include "models/four_axis_inverse.h"
#include "models/four_axis_params.h"
#include "models/six_axis_forward.h"
#include "models/six_axis_gravity.h"
#include "models/six_axis_inverse.h"
#include "models/six_axis_params.h"
#include "models/six_axis_posture.h"
#include "support/sample_arms.h"

namespace kine::bench {

namespace {

// The compiler takes the value as used, and as changed from outside.
template <class Value>
void Keep(const Value& value)
{
    asm volatile("" : : "g"(&value) : "memory");
}

constexpr ToolBlock kTool = {{30.0, -40.0, 150.0, 0.35, -0.6, 1.3}, {8.0, {-0.007, 0.017, 0.16}, {}, {}}};

struct SixAxisInput
{
    SixAngles q;
    KineArmConfig config;
    Pose flange;  // of the nominal arm
    HomMatrix baseFromFlange;
    LazyPose tool;  // of the calibrated arm with the tool block; a transform, as the chains hand it over
    LazyPose outOfReach;
    Matrix6 jacobian;
};

struct FourAxisInput
{
    FourAngles q;
    Pose target;
    std::int32_t posture;
    FourAngles seed;
    FourAxisState state;
    Matrix4 jacobian;
};

struct Prepared
{
    SixAxisParams nominal, calibrated;
    FourAxisParams tilted;
    std::vector<SixAxisInput> six;
    std::vector<FourAxisInput> four;
};

Prepared& Data()
{
    static Prepared prepared{};
    return prepared;
}

// Columns: velocity and angular velocity of the flange per radian of each joint, in the base.
Matrix6 JacobianOf(const LinkChain& chain)
{
    Matrix6 jacobian{};
    for (std::size_t i = 0; i < 6; ++i) {
        const auto& [direction, origin] = chain.joints[i];
        const Vec3 v = CrossProduct(direction, chain.baseFromFlange.t - origin);
        const double column[6] = {v.x, v.y, v.z, direction.x, direction.y, direction.z};
        for (std::size_t row = 0; row < 6; ++row) jacobian.m[row][i] = column[row];
    }
    return jacobian;
}

SixAxisInput SixAxisInputOf(const Prepared& data, const KineJoint& joints)
{
    constexpr Vec3 kFarAway{5000.0, 0.0, 0.0};
    SixAxisInput input{};
    for (std::size_t i = 0; i < input.q.size(); ++i) input.q[i] = joints.Axis[i] * DEG2RAD;
    input.config = SixAxisArmConfig(data.nominal, input.q);
    input.baseFromFlange = WalkLinks(data.nominal, SinesOf(input.q)).baseFromFlange;
    input.flange = MatrixToPose(input.baseFromFlange);
    input.tool = SixAxisToolPose(data.calibrated, SinesOf(input.q), kTool);
    const auto [rotation, position] = input.tool.AsMatrix();
    input.outOfReach = LazyPose(HomMatrix{rotation, position + kFarAway});
    input.jacobian = JacobianOf(WalkLinks(data.calibrated, SinesOf(input.q)));
    return input;
}

FourAxisInput FourAxisInputOf(const Prepared& data, const KineJoint& joints)
{
    FourAxisInput input{};
    for (std::size_t i = 0; i < input.q.size(); ++i) input.q[i] = joints.Axis[i] * DEG2RAD;
    input.posture = input.q[1] > 0.0 ? 1 : -1;
    input.state = FourAxisStateOf(data.tilted, input.q, FourAxisToolOf(kTool.frame));
    input.target = FourAxisToolPose(input.state);
    input.jacobian = FourAxisJacobian(data.tilted, input.state);
    FourAxisSeed seed{};
    if (FourAxisClosedForm(data.tilted, input.target, kTool.frame, input.posture, seed) != KINE_OK) {
        throw std::runtime_error("no closed form for the joints of a four-axis arm");
    }
    input.seed = {seed.q1, seed.elbow, seed.q3, seed.q4};
    return input;
}

const SixAxisInput& Six(std::size_t i) { return Data().six[i]; }
const FourAxisInput& Four(std::size_t i) { return Data().four[i]; }

// The gravity of the arm and the axes it bends, as the refinement sees them.
void Gravity(std::size_t i)
{
    Deflection deflection{};
    DeflectionGradient gradient{};
    Keep(GravityDeflection(Data().calibrated, SinesOf(Six(i).q), kTool.load, deflection, gradient));
    Keep(deflection);
    Keep(gradient);
}

void ClosedForm(std::size_t i)
{
    std::array<double, 8> axes{};
    Keep(ClosedFormIK(Data().nominal, Six(i).baseFromFlange, Six(i).config, axes));
    Keep(axes);
}

void SixInverse(std::size_t i, const LazyPose& target)
{
    std::array<double, 8> axes{};
    Keep(SixAxisInverse(Data().calibrated, target, kTool, Six(i).config, axes));
    Keep(axes);
}

void InvertJacobian(std::size_t i)
{
    Matrix6 inverse{};
    Keep(Matrix6Inverse(inverse, Six(i).jacobian));
    Keep(inverse);
}

void FourClosedForm(std::size_t i)
{
    FourAxisSeed seed{};
    Keep(FourAxisClosedForm(Data().tilted, Four(i).target, kTool.frame, Four(i).posture, seed));
    Keep(seed);
}

void FourRefine(std::size_t i)
{
    FourAngles q = Four(i).seed;
    Keep(FourAxisRefine(Data().tilted, Four(i).target, kTool.frame, q));
    Keep(q);
}

void InvertJacobian4(std::size_t i)
{
    Matrix4 inverse{};
    Keep(Jacobian4Inverse(Four(i).jacobian, inverse));
    Keep(inverse);
}

void SolveJacobian(std::size_t i)
{
    std::array<double, 6> x{};
    Keep(Matrix6Solve(Six(i).jacobian, {1.0, -2.0, 3.0, 0.1, 0.2, -0.3}, x));
    Keep(x);
}

void SolveJacobian4(std::size_t i)
{
    std::array<double, 4> x{};
    Keep(Jacobian4Solve(Four(i).jacobian, {1.0, -2.0, 3.0, 0.1}, x));
    Keep(x);
}

}  // namespace

void PrepareInnerSteps(const std::vector<KineJoint>& sixAxis, const std::vector<KineJoint>& fourAxis)
{
    Prepared& data = Data();
    const KineKinematicParam nominal = test::WristArm();
    const KineKinematicParam calibrated = test::CalibratedWristArm();
    const KineKinematicParam tilted = test::TiltedScara();
    if (InitSixAxisParams(KINE_ARM_SIX_AXIS, &nominal, data.nominal) != KINE_OK ||
        InitSixAxisParams(KINE_ARM_SIX_AXIS, &calibrated, data.calibrated) != KINE_OK ||
        InitFourAxisParams(KINE_ARM_FOUR_AXIS, KINE_ARM_FOUR_AXIS, &tilted, data.tilted) != KINE_OK) {
        throw std::runtime_error("an arm is refused");
    }
    data.six.clear();
    data.four.clear();
    for (const KineJoint& joints : sixAxis) data.six.push_back(SixAxisInputOf(data, joints));
    for (const KineJoint& joints : fourAxis) data.four.push_back(FourAxisInputOf(data, joints));
}

const std::vector<InnerStep>& InnerSteps()
{
    static const std::vector<InnerStep> steps = {
        {"six_axis_forward",
         [](std::size_t i) { Keep(SixAxisToolPose(Data().calibrated, SinesOf(Six(i).q), kTool)); }},
        {kChainWithAxes, [](std::size_t i) { Keep(WalkLinks(Data().calibrated, SinesOf(Six(i).q))); }},
        {"six_axis_gravity_and_gradient", Gravity},
        {"six_axis_closed_form", ClosedForm},
        {"Matrix6Inverse", InvertJacobian},
        {"Matrix6Solve", SolveJacobian},
        {kInverse, [](std::size_t i) { SixInverse(i, Six(i).tool); }},
        {kInverseOutOfReach, [](std::size_t i) { SixInverse(i, Six(i).outOfReach); }},
        {"four_axis_forward",
         [](std::size_t i) {
             Keep(FourAxisToolPose(FourAxisStateOf(Data().tilted, Four(i).q, FourAxisToolOf(kTool.frame))));
         }},
        {"four_axis_jacobian", [](std::size_t i) { Keep(FourAxisJacobian(Data().tilted, Four(i).state)); }},
        {"four_axis_closed_form", FourClosedForm},
        {"four_axis_refinement", FourRefine},
        {"Jacobian4Inverse", InvertJacobian4},
        {"Jacobian4Solve", SolveJacobian4},
        {"PoseToMatrix", [](std::size_t i) { Keep(PoseToMatrix(Six(i).flange)); }},
        {"MatrixToPose", [](std::size_t i) { Keep(MatrixToPose(Six(i).baseFromFlange)); }},
        {"MatrixMultiply",
         [](std::size_t i) { Keep(MatrixMultiply(Six(i).baseFromFlange, Six(0).baseFromFlange)); }},
        {"MatrixInverse", [](std::size_t i) { Keep(MatrixInverse(Six(i).baseFromFlange)); }},
    };
    return steps;
}

const InnerStep& InnerStepCalled(const std::string& name)
{
    for (const InnerStep& step : InnerSteps()) {
        if (step.name == name) return step;
    }
    throw std::out_of_range("no inner step is called " + name);
}

}  // namespace kine::bench
