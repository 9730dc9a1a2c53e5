// Forward operations of the six-axis arm: standard Denavit-Hartenberg links Rz(theta) Tz(d) Tx(a) Rx(alpha),
// multiplied left to right.
#include "models/six_axis_forward.h"

namespace kine {

namespace {

// A frame on its way along the chain, by its axes and origin. Each step multiplies on the right, that is,
// moves the frame in its own coordinates.
struct MovingFrame
{
    Vec3 x{1.0, 0.0, 0.0};
    Vec3 y{0.0, 1.0, 0.0};
    Vec3 z{0.0, 0.0, 1.0};
    Vec3 origin{0.0, 0.0, 0.0};

    void RotateX(const SinCos& angle)
    {
        const Vec3 oldY = y;
        y = Scale(angle.cos, oldY) + Scale(angle.sin, z);
        z = Scale(angle.cos, z) - Scale(angle.sin, oldY);
    }

    void RotateY(const SinCos& angle)
    {
        const Vec3 oldZ = z;
        z = Scale(angle.cos, oldZ) + Scale(angle.sin, x);
        x = Scale(angle.cos, x) - Scale(angle.sin, oldZ);
    }

    void RotateZ(const SinCos& angle)
    {
        const Vec3 oldX = x;
        x = Scale(angle.cos, oldX) + Scale(angle.sin, y);
        y = Scale(angle.cos, y) - Scale(angle.sin, oldX);
    }

    void TranslateX(double a) { origin = origin + Scale(a, x); }
    void TranslateZ(double d) { origin = origin + Scale(d, z); }

    void Link(double theta, double d, double a, const SinCos& alpha)
    {
        RotateZ(SinCosOf(theta));
        AlongLink(d, a, alpha);
    }

    // What of a link follows the rotation of its joint.
    void AlongLink(double d, double a, const SinCos& alpha)
    {
        TranslateZ(d);
        TranslateX(a);
        RotateX(alpha);
    }

    // The base turned by joint 1. Its third row holds no angle, so that a NaN there leaves z alone.
    static MovingFrame TurnedBase(const SinCos& q1)
    {
        return {{q1.cos, q1.sin, 0.0}, {-q1.sin, q1.cos, 0.0}};
    }

    [[nodiscard]] JointAxis Axis() const { return {z, origin}; }
    [[nodiscard]] HomMatrix InBase() const { return {FromAxes(x, y, z), origin}; }
};

// The forward operations do not report a deflection that is out of bounds: the arm then counts as rigid.
Deflection DeflectionOrZero(const SixAxisParams& params, const SixAngles& q, const CombinedLoad& load)
{
    Deflection deflection{};
    static_cast<void>(GravityDeflection(params, q, load, deflection));
    return deflection;
}

}  // namespace

LinkChain WalkLinks(const SixAxisParams& params, const SixAngles& deflected)
{
    LinkChain chain{};
    MovingFrame frame = MovingFrame::TurnedBase(SinCosOf(deflected[0]));

    chain.joints[0] = frame.Axis();
    frame.AlongLink(0.0, params.a1, params.alpha1);
    chain.joints[1] = frame.Axis();
    frame.Link(deflected[1] + kHalfPi, 0.0, params.a2, params.alpha2);
    frame.RotateY(params.beta2);
    chain.joints[2] = frame.Axis();
    frame.Link(deflected[2], params.d3, params.a3, params.alpha3);
    chain.joints[3] = frame.Axis();
    frame.Link(deflected[3], params.d4, params.a4, params.alpha4);
    chain.joints[4] = frame.Axis();
    frame.Link(deflected[4], params.d5, params.a5, params.alpha5);
    chain.joints[5] = frame.Axis();
    chain.baseFromFrame5 = frame.InBase();

    frame.RotateZ(SinCosOf(deflected[5]));
    frame.TranslateZ(params.d6);
    chain.baseFromFlange = frame.InBase();

    // d1 lifts the finished chain behind joint 1: it points along the base Z whatever the joints do.
    for (std::size_t i = 1; i < chain.joints.size(); ++i) chain.joints[i].origin.z += params.d1;
    chain.baseFromFrame5.t.z += params.d1;
    chain.baseFromFlange.t.z += params.d1;
    return chain;
}

SixAngles Deflected(const SixAngles& q, const Deflection& deflection)
{
    return {q[0], q[1] + deflection.q2, q[2] + deflection.q3, q[3], q[4] + deflection.q5, q[5]};
}

Pose SixAxisToolPose(const SixAxisParams& params, const SixAngles& q, const ToolBlock& tool)
{
    const LinkChain chain = WalkLinks(params, Deflected(q, DeflectionOrZero(params, q, tool.load)));
    return MatrixToPose(chain.baseFromFlange * PoseToMatrix(tool.frame));
}

Pose SixAxisFrame5Pose(const SixAxisParams& params, const SixAngles& q)
{
    const LinkChain chain = WalkLinks(params, Deflected(q, DeflectionOrZero(params, q, CombinedLoad{})));
    return MatrixToPose(chain.baseFromFrame5);
}

}  // namespace kine
