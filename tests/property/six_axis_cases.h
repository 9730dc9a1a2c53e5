// Random joints of six-axis arms that keep clear of singularities.
#pragma once

#include <cmath>

#include "support/random_records.h"
#include "support/records.h"
#include "support/rigid_matrix.h"
#include "support/sample_arms.h"

namespace kine::test {

struct NamedArm
{
    const char* name;
    KineKinematicParam param;
};

inline std::array<NamedArm, 4> SixAxisArms()
{
    return {{{"puma", Puma()},
             {"wrist", WristArm()},
             {"puma_gravity", PumaWithGravity()},
             {"wrist_calibrated", CalibratedWristArm()}}};
}

// Angle between the forearm and the line from joint 3 to the wrist centre, in degrees.
inline double ElbowAngleDeg(const KineSixAxisParam& p) { return InDegrees(std::atan2(p.a3, p.d4)); }

// Signed distance of the wrist centre from the joint-1 axis in the plane of the arm.
inline double WristDistance(const KineSixAxisParam& p, const KineJoint& q)
{
    const double q2 = InRadians(q.Axis[1]);
    const double q23 = q2 + InRadians(q.Axis[2]);
    return p.a1 - p.a2 * std::sin(q2) + p.d4 * std::cos(q23) - p.a3 * std::sin(q23);
}

inline bool IsClearOfSingularities(const KineSixAxisParam& p, const KineJoint& q)
{
    return std::fabs(WristDistance(p, q)) > 60.0 &&
           std::fabs(std::cos(InRadians(q.Axis[2] + ElbowAngleDeg(p)))) > 0.1 &&
           std::fabs(std::sin(InRadians(q.Axis[4]))) > 0.1;
}

// Joints that the inverse returns: any turn of axes 1, 4 and 6, one turn of the others.
inline KineJoint RegularJoints(SeededRandom& random, const KineSixAxisParam& p, double turns)
{
    const double e = ElbowAngleDeg(p);
    for (;;) {
        const KineJoint q = MakeJoints({random.Uniform(-turns, turns), random.Uniform(-179.5, 179.5),
                                        random.Uniform(-90.0 - e, 270.0 - e), random.Uniform(-turns, turns),
                                        random.Uniform(-179.5, 179.5), random.Uniform(-turns, turns)});
        if (IsClearOfSingularities(p, q)) return q;
    }
}

inline KineTool RandomTool(SeededRandom& random, double mass)
{
    KineTool tool = HeldTool(RandomFrame(random, 200.0, 80.0));
    tool.TLoad = MakeLoad(random.Uniform(0.0, mass), random.Uniform(-80, 80), random.Uniform(-80, 80),
                          random.Uniform(0, 150));
    return tool;
}

inline KineLoad RandomLoad(SeededRandom& random, double mass)
{
    return MakeLoad(random.Uniform(0.0, mass), random.Uniform(-60, 60), random.Uniform(-60, 60),
                    random.Uniform(0, 80));
}

}  // namespace kine::test
