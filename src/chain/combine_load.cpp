// CombineLoad. c: combined centre; d1, d2: centres of tool load and payload from it, in metres.
#include "chain/combine_load.h"

namespace kine {

namespace {

// kg. Up to here, equal included, there is no load to speak of and the centre is put at the flange.
constexpr double kMinMass = 1e-5;

constexpr double kMetresPerMillimetre = 0.001;

// One component of the inertia by the parallel-axis rule; u and v are the other two components.
double CombinedInertia(double tool, double payload, double toolMass, double payloadMass, double d1u,
                       double d1v, double d2u, double d2v)
{
    return tool + payload + toolMass * (d1u * d1u + d1v * d1v) + payloadMass * (d2u * d2u + d2v * d2v);
}

}  // namespace

CombinedLoad CombineLoad(const Load& toolLoad, const Load& payload, const Pose& flangeFrame)
{
    const double mass = toolLoad.mass + payload.mass;
    const double perMass = mass > kMinMass ? 1.0 / mass : 0.0;
    const Vec3& c1 = toolLoad.centre;
    const Vec3 p2 = payload.centre + Vec3{flangeFrame.x, flangeFrame.y, flangeFrame.z};
    const Vec3 c = Scale(kMetresPerMillimetre * perMass, Scale(payload.mass, p2) + Scale(toolLoad.mass, c1));
    const Vec3 d1 = Scale(kMetresPerMillimetre, c1) - c;
    const Vec3 d2 = Scale(kMetresPerMillimetre, p2) - c;

    CombinedLoad combined{};
    combined.mass = mass;
    combined.centre = c;
    combined.inertia = {CombinedInertia(toolLoad.inertia.x, payload.inertia.x, toolLoad.mass, payload.mass,
                                        d1.y, d1.z, d2.y, d2.z),
                        CombinedInertia(toolLoad.inertia.y, payload.inertia.y, toolLoad.mass, payload.mass,
                                        d1.x, d1.z, d2.x, d2.z),
                        CombinedInertia(toolLoad.inertia.z, payload.inertia.z, toolLoad.mass, payload.mass,
                                        d1.x, d1.y, d2.x, d2.y)};
    return combined;
}

}  // namespace kine
