// Reads the golden tables: plain text, values separated by blanks, '#' begins a comment line.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "KineDll.h"
#include "support/records.h"

namespace kine::test {

// One line, read from left to right. Running out of values is a failure.
class Row
{
public:
    Row(std::string place, const std::string& line) : place_(std::move(place))
    {
        std::istringstream in(line);
        for (std::string value; in >> value;) values_.push_back(value);
    }

    const std::string& Place() const { return place_; }

    std::string Word()
    {
        if (next_ >= values_.size()) {
            ADD_FAILURE() << place_ << ": too few values";
            return "";
        }
        return values_[next_++];
    }

    double Number()
    {
        const std::string word = Word();
        char* end = nullptr;
        const double value = std::strtod(word.c_str(), &end);
        if (word.empty() || *end != '\0') ADD_FAILURE() << place_ << ": not a number: " << word;
        return value;
    }

    // Base 10, or 16 with 0x in front.
    std::int32_t Integer() { return static_cast<std::int32_t>(std::strtoll(Word().c_str(), nullptr, 0)); }

    template <std::size_t N>
    std::array<double, N> Numbers()
    {
        std::array<double, N> result{};
        for (double& value : result) value = Number();
        return result;
    }

    KineFrame Frame()
    {
        const auto v = Numbers<6>();
        return {v[0], v[1], v[2], v[3], v[4], v[5]};
    }

    KineArmConfig Config()
    {
        KineArmConfig config{};
        for (std::int32_t* value : {&config.Cfg1, &config.Cfg2, &config.Cfg3, &config.Cfg4})
            *value = Integer();
        return config;
    }

    KineLoad LoadOf()
    {
        KineLoad load{};
        load.Mass = Number();
        for (double& value : load.Cog) value = Number();
        return load;
    }

    bool AtEnd() const { return next_ == values_.size(); }

private:
    std::string place_;
    std::vector<std::string> values_;
    std::size_t next_ = 0;
};

inline std::vector<Row> ReadTable(const std::string& name)
{
    std::vector<Row> rows;
    std::ifstream in(std::string(KINE_GOLDEN_DIR) + "/" + name);
    int number = 0;
    for (std::string line; std::getline(in, line);) {
        ++number;
        if (line.empty() || line[0] == '#') continue;
        rows.emplace_back(name + ":" + std::to_string(number), line);
    }
    return rows;
}

struct GoldenArm
{
    std::uint32_t type = 0;
    KineKinematicParam param{};
};

// An arm of arms.txt.
inline GoldenArm ArmOfTable(const std::string& name)
{
    for (Row& row : ReadTable("arms.txt")) {
        if (row.Word() != name) continue;
        GoldenArm arm;
        arm.type = static_cast<std::uint32_t>(row.Integer());
        for (std::size_t i = 0; !row.AtEnd(); ++i) {
            const double value = row.Number();
            std::memcpy(reinterpret_cast<unsigned char*>(&arm.param) + i * sizeof value, &value,
                        sizeof value);
        }
        return arm;
    }
    ADD_FAILURE() << "no arm " << name;
    return {};
}

// Tolerances by unit: some thousand roundings of values of this size.
constexpr double kMmTolerance = 1e-9;
constexpr double kDegTolerance = 1e-9;

// +180 and -180 degrees are one angle, a rounding apart.
inline void ExpectAngleNear(double actual, double expected)
{
    EXPECT_NEAR(std::remainder(actual - expected, 360.0), 0.0, kDegTolerance)
        << actual << " for " << expected;
    EXPECT_LE(std::fabs(actual), 180.0);
}

inline void ExpectFrameNear(const KineFrame& actual, const KineFrame& expected)
{
    EXPECT_NEAR(actual.X, expected.X, kMmTolerance);
    EXPECT_NEAR(actual.Y, expected.Y, kMmTolerance);
    EXPECT_NEAR(actual.Z, expected.Z, kMmTolerance);
    ExpectAngleNear(actual.A, expected.A);
    ExpectAngleNear(actual.B, expected.B);
    ExpectAngleNear(actual.C, expected.C);
}

inline void ExpectConfig(const KinePose& pose, const KineArmConfig& expected)
{
    EXPECT_EQ(pose.Cfg1, expected.Cfg1);
    EXPECT_EQ(pose.Cfg2, expected.Cfg2);
    EXPECT_EQ(pose.Cfg3, expected.Cfg3);
    EXPECT_EQ(pose.Cfg4, expected.Cfg4);
}

struct ForwardPoses
{
    KinePose tip, vision;
};

// The tool point in the base, then the vision pose, with one configuration.
inline ForwardPoses ExpectForward(const KineJoint& joints, const KineTool& tool, const KineLoad& load,
                                  Row& row)
{
    const KineWobj wobj = FixedWobj();
    KinePose tip = Untouched<KinePose>();
    EXPECT_EQ(Kine_JointToBasePos(&joints, &tool, &wobj, &load, &tip), KINE_OK);
    KinePose vision = Untouched<KinePose>();
    EXPECT_EQ(Kine_FKineVision(&joints, &vision), KINE_OK);
    ExpectFrameNear(tip.Frame, row.Frame());
    ExpectFrameNear(vision.Frame, row.Frame());
    const KineArmConfig config = row.Config();
    ExpectConfig(tip, config);
    ExpectConfig(vision, config);
    return {tip, vision};
}

// The code and the first kAxes axes of the row; the other axes are 0, and a refusal writes nothing.
template <std::size_t kAxes>
void ExpectInverse(const KinePose& target, const KineTool& tool, const KineLoad& load, KineResult code,
                   Row& row)
{
    const KineWobj wobj = FixedWobj();
    KineJoint joints = Untouched<KineJoint>();
    EXPECT_EQ(Kine_WobjPosToJoint(&target, &tool, &wobj, &load, &joints), code);
    const auto expected = row.Numbers<kAxes>();
    if (code != KINE_OK) {
        EXPECT_TRUE(IsUntouched(joints));
        return;
    }
    for (std::size_t i = 0; i < kAxes; ++i) EXPECT_NEAR(joints.Axis[i], expected[i], kDegTolerance);
    for (std::size_t i = kAxes; i < 8; ++i) EXPECT_EQ(joints.Axis[i], 0.0);
}

inline KinePose TargetOf(const KineFrame& frame, const KineArmConfig& config)
{
    KinePose pose{};
    pose.Frame = frame;
    pose.Cfg1 = config.Cfg1;
    pose.Cfg2 = config.Cfg2;
    pose.Cfg3 = config.Cfg3;
    pose.Cfg4 = config.Cfg4;
    return pose;
}

}  // namespace kine::test
