// What the demonstration programs share: the cell, the Puma, printing poses, and the distance between two
// poses.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "KineDll.h"

namespace demo {

struct Cell
{
    KineTool tool;
    KineWobj wobj;
    KineLoad payload;
};

// The rigid Puma 560: Corke and Armstrong-Helouvry, ICRA 1994.
inline KineKinematicParam Puma560()
{
    KineKinematicParam param{};
    KineSixAxisParam& p = param.SixAxis;
    p.a2 = 431.8;
    p.a3 = 20.3;
    p.d4 = 431.8;
    p.d3 = p.lateralOffset = -150.05;
    p.alpha1 = 90.0;
    p.alpha3 = 90.0;
    p.alpha4 = -90.0;
    p.alpha5 = 90.0;
    return param;
}

// How far two poses are apart: mm, and the largest difference of an element of the rotation as an angle, deg.
struct Residual
{
    double mm;
    double deg;
};

inline std::array<double, 9> RotationOf(const KineFrame& frame)
{
    constexpr double kRadians = 3.141592653589793 / 180.0;
    const double ca = std::cos(frame.A * kRadians), sa = std::sin(frame.A * kRadians);
    const double cb = std::cos(frame.B * kRadians), sb = std::sin(frame.B * kRadians);
    const double cc = std::cos(frame.C * kRadians), sc = std::sin(frame.C * kRadians);
    return {ca * cb,
            ca * sb * sc - sa * cc,
            ca * sb * cc + sa * sc,  //
            sa * cb,
            sa * sb * sc + ca * cc,
            sa * sb * cc - ca * sc,  //
            -sb,
            cb * sc,
            cb * cc};
}

inline Residual ResidualOf(const KineFrame& a, const KineFrame& b)
{
    const std::array<double, 9> ra = RotationOf(a);
    const std::array<double, 9> rb = RotationOf(b);
    double largest = 0.0;
    for (std::size_t i = 0; i < ra.size(); ++i) largest = std::max(largest, std::fabs(ra[i] - rb[i]));
    return {std::hypot(a.X - b.X, a.Y - b.Y, a.Z - b.Z), largest * 180.0 / 3.141592653589793};
}

inline void PrintFrame(const char* label, const KineFrame& f)
{
    std::printf("  %-14s %10.4f %10.4f %10.4f mm  %10.4f %10.4f %10.4f deg\n", label, f.X, f.Y, f.Z, f.A, f.B,
                f.C);
}

// Says on standard error what failed; true when nothing did.
inline bool Succeeded(const char* call, KineResult code)
{
    if (code == KINE_OK) return true;
    std::fprintf(stderr, "%s failed: 0x%04X\n", call, static_cast<unsigned>(code));
    return false;
}

}  // namespace demo
