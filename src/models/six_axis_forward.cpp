// Forward operations of the six-axis arm: standard Denavit-Hartenberg links Rz(theta) Tz(d) Tx(a) Rx(alpha),
// multiplied left to right.
#include "models/six_axis_forward.h"

namespace kine {

namespace {

// A vector whose x and y share a register: most of a walk is the same sum for all three components.
struct PackedVec3
{
    using Pair = double __attribute__((vector_size(16)));
    Pair xy;
    double z;

    PackedVec3(double x, double y, double zValue) : xy{x, y}, z(zValue) {}
    PackedVec3(Pair xyValue, double zValue) : xy(xyValue), z(zValue) {}
    operator Vec3() const
    {
        return {xy[0], xy[1], z};
    }  // NOLINT(google-explicit-constructor): the same vector
};

PackedVec3 operator+(const PackedVec3& u, const PackedVec3& v) { return {u.xy + v.xy, u.z + v.z}; }
PackedVec3 operator-(const PackedVec3& u, const PackedVec3& v) { return {u.xy - v.xy, u.z - v.z}; }
PackedVec3 Scale(double s, const PackedVec3& v) { return {s * v.xy, s * v.z}; }

// A frame on its way along the chain, by its axes and origin. Each step multiplies on the right, that is,
// moves the frame in its own coordinates.
struct MovingFrame
{
    PackedVec3 x;
    PackedVec3 y;
    PackedVec3 z{0.0, 0.0, 1.0};
    PackedVec3 origin{0.0, 0.0, 0.0};

    void RotateX(const SinCos& angle)
    {
        const PackedVec3 oldY = y;
        y = Scale(angle.cos, oldY) + Scale(angle.sin, z);
        z = Scale(angle.cos, z) - Scale(angle.sin, oldY);
    }

    void RotateY(const SinCos& angle)
    {
        const PackedVec3 oldZ = z;
        z = Scale(angle.cos, oldZ) + Scale(angle.sin, x);
        x = Scale(angle.cos, x) - Scale(angle.sin, oldZ);
    }

    void RotateZ(const SinCos& angle)
    {
        const PackedVec3 oldX = x;
        x = Scale(angle.cos, oldX) + Scale(angle.sin, y);
        y = Scale(angle.cos, y) - Scale(angle.sin, oldX);
    }

    void TranslateX(double a) { origin = origin + Scale(a, x); }
    void TranslateZ(double d) { origin = origin + Scale(d, z); }

    void Link(const SinCos& theta, double d, double a, const SinCos& alpha)
    {
        RotateZ(theta);
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

    // d1 lifts the finished chain: it points along the base Z whatever the joints do.
    [[nodiscard]] HomMatrix LiftedBy(double d1) const
    {
        return {FromAxes(x, y, z), origin + PackedVec3{0.0, 0.0, d1}};
    }
};

// Walks along five links to frame 5. atJoint(i, frame) sees the frame that joint i + 1 turns.
template <class AtJoint>
MovingFrame WalkToFrame5(const SixAxisParams& params, const JointSines& deflected, AtJoint atJoint)
{
    MovingFrame frame = MovingFrame::TurnedBase(deflected[0]);
    atJoint(0, frame);
    frame.AlongLink(0.0, params.a1, params.alpha1);
    atJoint(1, frame);
    frame.Link(deflected[1], 0.0, params.a2, params.alpha2);
    frame.RotateY(params.beta2);
    atJoint(2, frame);
    frame.Link(deflected[2], params.d3, params.a3, params.alpha3);
    atJoint(3, frame);
    frame.Link(deflected[3], params.d4, params.a4, params.alpha4);
    atJoint(4, frame);
    frame.Link(deflected[4], params.d5, params.a5, params.alpha5);
    atJoint(5, frame);
    return frame;
}

// The same to the flange, which is the result.
template <class AtJoint>
HomMatrix Walk(const SixAxisParams& params, const JointSines& deflected, AtJoint atJoint)
{
    MovingFrame frame = WalkToFrame5(params, deflected, atJoint);
    frame.RotateZ(deflected[5]);
    frame.TranslateZ(params.d6);
    return frame.LiftedBy(params.d1);
}

// The forward operations do not report a deflection that is out of bounds: the arm then counts as rigid.
Deflection DeflectionOrZero(const SixAxisParams& params, const JointSines& q, const CombinedLoad& load)
{
    Deflection deflection{};
    static_cast<void>(GravityDeflection(params, q, load, deflection));
    return deflection;
}

}  // namespace

JointSines SinesOf(const SixAngles& q)
{
    return {SinCosOf(q[0]), SinCosOf(q[1] + kHalfPi), SinCosOf(q[2]),
            SinCosOf(q[3]), SinCosOf(q[4]),           SinCosOf(q[5])};
}

HomMatrix BaseFromFlange(const SixAxisParams& params, const JointSines& deflected)
{
    return Walk(params, deflected, [](std::size_t, const MovingFrame&) {});
}

LinkChain WalkLinks(const SixAxisParams& params, const JointSines& deflected)
{
    LinkChain chain{};
    chain.baseFromFlange = Walk(params, deflected, [&](std::size_t joint, const MovingFrame& frame) {
        chain.joints[joint] = {frame.z, frame.origin};
    });
    // What Walk does to the flange: joint 1 lies below the lift.
    for (std::size_t i = 1; i < chain.joints.size(); ++i) chain.joints[i].origin.z += params.d1;
    return chain;
}

JointSines Deflected(const JointSines& q, const Deflection& deflection)
{
    // A deflection is small: the bound of GravityDeflection lies far within the step of the series.
    return {q[0], Advanced(q[1], deflection.q2), Advanced(q[2], deflection.q3),
            q[3], Advanced(q[4], deflection.q5), q[5]};
}

LazyPose SixAxisToolPose(const SixAxisParams& params, const JointSines& q, const ToolBlock& tool)
{
    const JointSines bent = Deflected(q, DeflectionOrZero(params, q, tool.load));
    return LazyPose(BaseFromFlange(params, bent) * PoseToMatrix(tool.frame));
}

Pose SixAxisFrame5Pose(const SixAxisParams& params, const SixAngles& q)
{
    const JointSines sines = SinesOf(q);
    const JointSines bent = Deflected(sines, DeflectionOrZero(params, sines, CombinedLoad{}));
    const MovingFrame frame5 = WalkToFrame5(params, bent, [](std::size_t, const MovingFrame&) {});
    return MatrixToPose(frame5.LiftedBy(params.d1));
}

}  // namespace kine
