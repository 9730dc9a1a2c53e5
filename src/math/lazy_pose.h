// A pose that keeps the form it was made in, so that a chain of transforms needs no angles on its way.
#pragma once

#include "math/transform.h"

namespace kine {

// Stands for a Pose. Made from a transform m it stands for MatrixToPose(m); the angles are computed when
// they are asked for.
// NOLINTBEGIN(cppcoreguidelines-pro-type-union-access,cppcoreguidelines-pro-type-member-init): form_ says which
// member of the union is alive.
class LazyPose
{
public:
    // The zero pose.
    constexpr LazyPose() : pose_{} {}
    constexpr LazyPose(const Pose& pose)  // NOLINT(google-explicit-constructor): every pose is one
        : pose_(pose), form_(Form::kPose)
    {}
    constexpr explicit LazyPose(const HomMatrix& matrix) : matrix_(matrix), form_(Form::kMatrix) {}

    // Whether it was made as the zero pose, by default.
    [[nodiscard]] bool IsZero() const { return form_ == Form::kZero; }

    // Whether it was made from a transform of finite numbers: a product with the zero pose leaves such a
    // one alone.
    [[nodiscard]] bool IsFiniteMatrix() const { return form_ == Form::kMatrix && IsFinite(matrix_); }

    [[nodiscard]] Vec3 Position() const
    {
        return form_ == Form::kMatrix ? matrix_.t : Vec3{pose_.x, pose_.y, pose_.z};
    }

    // The a of AsPose.
    [[nodiscard]] double Heading() const { return form_ == Form::kMatrix ? HeadingOf(matrix_.r) : pose_.a; }

    operator Pose() const { return AsPose(); }  // NOLINT(google-explicit-constructor): it stands for one

    [[nodiscard]] Pose AsPose() const { return form_ == Form::kMatrix ? MatrixToPose(matrix_) : pose_; }

    // PoseToMatrix(AsPose()). The way through the angles changes nothing but the last bits of a rotation,
    // except at the gimbal, where it sets a to 0, and for numbers that are not finite: there it is taken.
    [[nodiscard]] HomMatrix AsMatrix() const
    {
        if (form_ == Form::kZero) return kIdentityTransform;
        if (form_ == Form::kMatrix && IsFinite(matrix_.r) && !IsGimbal(matrix_.r)) return matrix_;
        return PoseToMatrix(AsPose());
    }

private:
    enum class Form : std::uint8_t
    {
        kZero,
        kPose,
        kMatrix,
    };

    union
    {
        Pose pose_;
        HomMatrix matrix_;
    };
    Form form_ = Form::kZero;
};
// NOLINTEND(cppcoreguidelines-pro-type-union-access,cppcoreguidelines-pro-type-member-init)

}  // namespace kine
