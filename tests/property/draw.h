// A small random generator, the same on every platform, and what the property tests draw with it.
#pragma once

#include <cstdint>
#include <ostream>
#include <random>

#include "KineDll.h"

namespace kine::test {

class Draw
{
public:
    explicit Draw(std::uint64_t seed) : generator_(seed) {}

    double Between(double low, double high)
    {
        const double unit = static_cast<double>(generator_() >> 11) / 9007199254740992.0;  // [0, 1)
        return low + (high - low) * unit;
    }

    // low..high, both included.
    int Whole(int low, int high)
    {
        return low + static_cast<int>(generator_() % static_cast<std::uint64_t>(high - low + 1));
    }

    // A frame with angles in degrees, B clear of +-90.
    KineFrame Frame(double reach, double tilt)
    {
        KineFrame frame{};
        frame.X = Between(-reach, reach);
        frame.Y = Between(-reach, reach);
        frame.Z = Between(-reach, reach);
        frame.A = Between(-179.0, 179.0);
        frame.B = Between(-tilt, tilt);
        frame.C = Between(-179.0, 179.0);
        return frame;
    }

private:
    std::mt19937_64 generator_;
};

}  // namespace kine::test

// So that SCOPED_TRACE shows an input with all its digits.
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
