// Arm parameters that contradict the closed form behind the inverse, or that are in another unit.
#include <array>
#include <cmath>
#include <cstddef>
#include <span>

#include "check/static_checks.h"

namespace kine_cli {
namespace {

using Twists = std::array<double, 5>;
constexpr Twists kNominalTwists = {90.0, 0.0, 90.0, -90.0, 90.0};
constexpr double kRadian = 57.29577951308232;  // deg

// What a calibration finds stays far below the first bound; the inverse fails for many targets beyond
// the second.
constexpr double kLargeAngleError = 1.0;  // deg
constexpr double kWrongAngle = 5.0;       // deg
constexpr double kLargeLengthError = 1.0;
constexpr double kWrongLength = 5.0;
constexpr double kLongestInMetres = 10.0;  // no arm for people to stand beside has all lengths below 10 mm

Twists TwistsOf(const KineSixAxisParam& p) { return {p.alpha1, p.alpha2, p.alpha3, p.alpha4, p.alpha5}; }

bool IsNear(const Twists& a, const Twists& b, double within)
{
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (!(std::fabs(a[i] - b[i]) <= within)) return false;
    }
    return true;
}

Twists Scaled(double factor)
{
    Twists twists = kNominalTwists;
    for (double& twist : twists) twist *= factor;
    return twists;
}

Severity Grade(double size, double wrong) { return size > wrong ? Severity::kError : Severity::kWarning; }

constexpr const char* kWhyNominal =
    "The inverse starts from a closed form that holds for the twists 90, 0, 90, -90, 90 only.";

void CheckTwists(const KineSixAxisParam& p, FindingList& findings)
{
    const std::string path = "arm.alpha_deg";
    const Twists twists = TwistsOf(p);
    if (IsNear(twists, Scaled(1.0 / kRadian), 0.1)) {
        findings.Error("twists_in_radians", path,
                       {"the twists are radians", kWhyNominal,
                        "Give degrees, or leave alpha_deg out: the nominal twists are the default."});
    } else if (IsNear(twists, {}, 0.0)) {
        findings.Error("twists_zero", path,
                       {"all twists are 0", kWhyNominal, "Leave alpha_deg out, or give 90, 0, 90, -90, 90."});
    } else if (IsNear(twists, Scaled(-1.0), kWrongAngle)) {
        findings.Error(
            "twists_negated", path,
            {"all twists have the other sign", kWhyNominal,
             "Turn the frames of the other convention; the signs of the joints change with them."});
    } else if (IsNear(twists, {90.0, 0.0, 90.0, 90.0, -90.0}, kWrongAngle)) {
        findings.Error("twists_wrist_mirrored", path,
                       {"the twists of the wrist have the other sign", kWhyNominal,
                        "Give 90, 0, 90, -90, 90, and count axis 5 the other way."});
    } else {
        for (std::size_t i = 0; i < twists.size(); ++i) {
            const double off = std::fabs(twists[i] - kNominalTwists[i]);
            if (off <= kLargeAngleError) continue;
            findings.Add(Grade(off, kWrongAngle), "twist_off", Indexed(path, i),
                         {"alpha" + std::to_string(i + 1) + " is " + Shown(twists[i]) + ", nominal is " +
                              Shown(kNominalTwists[i]),
                          std::string(kWhyNominal) + " A calibration finds errors far below 1 degree.",
                          "Check the unit and the convention; give the nominal twist when in doubt."});
        }
    }
}

// Why d3 and the lateral offset differ, as far as the numbers tell.
FindingText LateralText(const KineSixAxisParam& p)
{
    const std::string both = "d3_mm is " + Shown(p.d3) + " and lateral_offset_mm " + Shown(p.lateralOffset);
    const std::string why =
        "They are the same length: the forward calls read d3, the closed form of the inverse the "
        "lateral offset.";
    if (p.d3 == 0.0) return {both + ": d3 is left out", why, "Give both the same number."};
    if (p.lateralOffset == 0.0)
        return {both + ": the lateral offset is left out", why, "Give both the same number."};
    if (std::fabs(p.d3 + p.lateralOffset) <= kLargeLengthError) {
        return {both + ": one has the other sign", why,
                "Both are positive where the forearm stands to the right of axis 1."};
    }
    return {both, why, "Give both the same number; only a calibration may part them, by less than 1 mm."};
}

void CheckOffsets(const KineSixAxisParam& p, FindingList& findings)
{
    const double apart = std::fabs(p.d3 - p.lateralOffset);
    if (apart > kLargeLengthError)
        findings.Add(Grade(apart, kWrongLength), "lateral_offset", "arm.d3_mm", LateralText(p));

    struct Small
    {
        const char* key;
        double value;
        double large;
        double wrong;
    };
    const std::array<Small, 4> small = {{{"beta2_deg", p.beta2, kLargeAngleError, kWrongAngle},
                                         {"d5_mm", p.d5, kLargeLengthError, kWrongLength},
                                         {"a4_mm", p.a4, kLargeLengthError, kWrongLength},
                                         {"a5_mm", p.a5, kLargeLengthError, kWrongLength}}};
    for (const Small& field : small) {
        const double size = std::fabs(field.value);
        if (!(size > field.large)) continue;
        findings.Add(Grade(size, field.wrong), "calibration_error_large", std::string("arm.") + field.key,
                     {std::string(field.key) + " is " + Shown(field.value) + ", nominal is 0",
                      "It is there for the small errors that a calibration finds. The inverse starts without "
                      "it; an arm whose wrist axes do not meet in one point does not fit the model.",
                      "Give 0, or what a calibration has found."});
    }
}

// Lengths that are all below 10.
void CheckUnit(std::span<const double> lengths, FindingList& findings)
{
    for (const double length : lengths) {
        if (!(std::fabs(length) < kLongestInMetres)) return;
    }
    findings.Error("lengths_in_metres", "arm",
                   {"all lengths are below 10 mm",
                    "They look like metres. The library would compute in metres and judge by limits in mm.",
                    "Give millimetres."});
}

bool HasMass(const Cell& cell)
{
    bool hasMass = false;
    for (const auto& tool : cell.tools) hasMass = hasMass || tool.record.TLoad.Mass > 0.0;
    for (const auto& load : cell.loads) hasMass = hasMass || load.record.Mass > 0.0;
    return hasMass;
}

void CheckStiffness(const Cell& cell, FindingList& findings)
{
    const KineSixAxisParam& p = cell.param.SixAxis;
    const std::array<std::pair<const char*, double>, 3> stiffness = {
        {{"k2_Nm_per_rad", p.k2}, {"k3_Nm_per_rad", p.k3}, {"k5_Nm_per_rad", p.k5}}};
    std::size_t zeros = 0;
    for (const auto& [key, value] : stiffness) {
        if (value == 0.0) ++zeros;
        if (!(value < 0.0)) continue;
        findings.Error("stiffness_negative", std::string("arm.") + key,
                       {std::string(key) + " is " + Shown(value), "The joint would rise under its load.",
                        "Give the torque about the joint divided by the angle that it gives way."});
    }
    bool hasWeights = false;
    for (std::size_t i = 0; i < 6; ++i) hasWeights = hasWeights || p.G[i] != 0.0;
    for (const auto& [key, value] : stiffness) {
        if (value != 0.0 || zeros == 3) continue;
        findings.Error("stiffness_zero", std::string("arm.") + key,
                       {std::string(key) + " is 0 and another stiffness is not",
                        "One stiffness of 0 makes the whole arm rigid: links and loads bend no joint.",
                        "Give all three; a joint that does not bend gets 1e12."});
    }
    if (zeros == 3 && hasWeights) {
        findings.Warning("weights_without_stiffness", "arm.weights_Nmm",
                         {"weights are given, but no stiffness",
                          "With a stiffness of 0 the arm is rigid: the weights have no effect.",
                          "Give k2_Nm_per_rad, k3_Nm_per_rad and k5_Nm_per_rad, or leave the weights out."});
    }
    if (zeros == 3 && !hasWeights && HasMass(cell)) {
        findings.Note("loads_on_rigid_arm", "arm",
                      {"loads are given, but no stiffness", "The arm is rigid: no load changes a position.",
                       "Nothing, if the arm needs no correction for gravity."});
    }
    if (zeros == 0 && !hasWeights) {
        findings.Warning("stiffness_without_weights", "arm.k2_Nm_per_rad",
                         {"stiffness is given, but no weights of the links",
                          "Tool and payload bend the arm, its own links do not.", "Give weights_Nmm."});
    }
}

bool IsQuarterTurnInRadians(double angle)
{
    const double quarters = std::fabs(angle) * kRadian / 90.0;
    return quarters > 0.5 && quarters < 2.5 && std::fabs(quarters - std::round(quarters)) < 1e-3;
}

void CheckMount(const KineSixAxisParam& p, FindingList& findings)
{
    constexpr double kSmallTilt = 15.0;
    const std::array<std::pair<const char*, double>, 2> mounts = {
        {{"mount_x_deg", p.mountX}, {"mount_y_deg", p.mountY}}};
    const bool bends = p.k2 != 0.0 && p.k3 != 0.0 && p.k5 != 0.0;
    for (const auto& [key, angle] : mounts) {
        const std::string path = std::string("arm.") + key;
        const double tilt = std::fabs(std::remainder(angle, 360.0));
        if (angle == 0.0) continue;
        if (!bends) {
            findings.Note("mount_without_effect", path,
                          {std::string(key) + " has no effect on a rigid arm",
                           "The mounting turns the direction of gravity only; positions stay in the base.",
                           "For a base that leans, put the robot on a mechanical unit with that frame."});
        } else if (IsQuarterTurnInRadians(angle)) {
            findings.Warning("mount_in_radians", path,
                             {std::string(key) + " " + Shown(angle) + " is a quarter or half turn in radians",
                              "The tilt is in degrees.", "Give 90 or 180."});
        } else if (path == "arm.mount_x_deg" && tilt > kSmallTilt && tilt < 180.0 - kSmallTilt) {
            findings.Warning(
                "mount_tilt", path,
                {std::string(key) + " is " + Shown(angle),
                 "The links feel only the cosine of this tilt: on a wall they are weightless.",
                 "Right for a floor, a ceiling (180) and small tilts; check positions otherwise."});
        } else if (path == "arm.mount_y_deg" && tilt > kSmallTilt) {
            findings.Warning(
                "mount_tilt", path,
                {std::string(key) + " is " + Shown(angle),
                 "The links do not feel this tilt: they count as upright.", "A ceiling is mount_x_deg 180."});
        }
    }
}

}  // namespace

void CheckSixAxisArm(const Cell& cell, FindingList& findings)
{
    const KineSixAxisParam& p = cell.param.SixAxis;
    const std::array<double, 7> lengths = {p.a1, p.a2, p.a3, p.d1, p.d4, p.d6, p.d3};
    CheckUnit(lengths, findings);
    CheckTwists(p, findings);
    CheckOffsets(p, findings);
    CheckStiffness(cell, findings);
    CheckMount(p, findings);
}

void CheckFourAxisArm(const Cell& cell, FindingList& findings)
{
    const KineFourAxisParam& p = cell.param.FourAxis;
    const std::array<double, 3> lengths = {p.Link1Length, p.Link2Length, p.ZOffset};
    CheckUnit(lengths, findings);
    const std::array<std::pair<const char*, double>, 4> tilts = {{{"link1_tilt_x_deg", p.Link1TiltX},
                                                                  {"link2_tilt_x_deg", p.Link2TiltX},
                                                                  {"link1_tilt_y_deg", p.Link1TiltY},
                                                                  {"link2_tilt_y_deg", p.Link2TiltY}}};
    for (const auto& [key, tilt] : tilts) {
        if (!(std::fabs(tilt) > kLargeAngleError)) continue;
        findings.Add(
            Grade(std::fabs(tilt), kWrongAngle), "tilt_large", std::string("arm.") + key,
            {std::string(key) + " is " + Shown(tilt),
             "The tilts are the small errors of upright axes. Poses of this arm have a heading only.",
             "Give 0, or what a calibration has found."});
    }
}

}  // namespace kine_cli
