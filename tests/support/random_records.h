// Random public records, and how SCOPED_TRACE shows them.
#pragma once

#include <ostream>

#include "KineDll.h"
#include "support/seeded_random.h"

namespace kine::test {

// A frame with angles in degrees, B clear of +-90.
inline KineFrame RandomFrame(SeededRandom& random, double reach, double tilt)
{
    KineFrame frame{};
    frame.X = random.Uniform(-reach, reach);
    frame.Y = random.Uniform(-reach, reach);
    frame.Z = random.Uniform(-reach, reach);
    frame.A = random.Uniform(-179.0, 179.0);
    frame.B = random.Uniform(-tilt, tilt);
    frame.C = random.Uniform(-179.0, 179.0);
    return frame;
}

// Any angles.
inline KineFrame AnyFrame(SeededRandom& random)
{
    KineFrame frame{};
    frame.X = random.Uniform(-1500.0, 1500.0);
    frame.Y = random.Uniform(-1500.0, 1500.0);
    frame.Z = random.Uniform(-1500.0, 1500.0);
    frame.A = random.Uniform(-180.0, 180.0);
    frame.B = random.Uniform(-180.0, 180.0);
    frame.C = random.Uniform(-180.0, 180.0);
    return frame;
}

}  // namespace kine::test

// All digits, so that a failing input can be repeated.
inline std::ostream& operator<<(std::ostream& out, const KineFrame& f)
{
    const auto precision = out.precision(17);
    out << "{" << f.X << ", " << f.Y << ", " << f.Z << ", " << f.A << ", " << f.B << ", " << f.C << "}";
    out.precision(precision);
    return out;
}

inline std::ostream& operator<<(std::ostream& out, const KineJoint& joints)
{
    const auto precision = out.precision(17);
    out << "{";
    for (const double axis : joints.Axis) out << axis << ", ";
    out << "ext";
    for (const double axis : joints.ExtAxis) out << " " << axis;
    out << "}";
    out.precision(precision);
    return out;
}
