// The rigid arms of the library as chains of Orocos KDL, and its solvers on them. KDL counts in metres and
// radians, which its tolerances are made for; joints come in the order of the library, degrees, with the
// angle of the screw as axis 3 of the four-axis arm.
#pragma once

#include <cstddef>
#include <kdl/chain.hpp>
#include <kdl/chainfksolverpos_recursive.hpp>
#include <kdl/chainiksolverpos_lma.hpp>
#include <kdl/chainiksolverpos_nr_jl.hpp>
#include <kdl/chainiksolvervel_pinv.hpp>
#include <kdl/chainjnttojacsolver.hpp>
#include <kdl/frames.hpp>
#include <kdl/jntarray.hpp>

#include "KineDll.h"
#include "cells.h"
#include "residual.h"

namespace kine::bench {

inline constexpr double kMetresPerMm = 1e-3;

KDL::Frame KdlFrameOf(const KineFrame& frame);

// Base to tool centre point.
KDL::Chain KdlChainOf(const Arm& arm, const KineFrame& tool);
KDL::JntArray KdlJointsOf(const Arm& arm, const KineJoint& joints);

// As ResidualOf for two frames of the library.
Residual KdlResidualOf(const KDL::Frame& a, const KDL::Frame& b);

// The solvers of one chain with their own default tolerances, and what they work on.
class KdlArm
{
public:
    KdlArm(const Arm& arm, const KineFrame& tool);

    // The solvers refer to the chain beside them.
    KdlArm(const KdlArm&) = delete;
    KdlArm& operator=(const KdlArm&) = delete;

    bool Forward(const KDL::JntArray& q, KDL::Frame& pose) { return forward_.JntToCart(q, pose) >= 0; }
    bool Axes(const KDL::JntArray& q, KDL::Jacobian& axes) { return jacobian_.JntToJac(q, axes) >= 0; }
    bool LevenbergMarquardt(const KDL::JntArray& seed, const KDL::Frame& target, KDL::JntArray& q)
    {
        return levenbergMarquardt_.CartToJnt(seed, target, q) >= 0;
    }
    bool NewtonWithLimits(const KDL::JntArray& seed, const KDL::Frame& target, KDL::JntArray& q)
    {
        return newton_.CartToJnt(seed, target, q) >= 0;
    }

private:
    KDL::Chain chain_;
    KDL::ChainFkSolverPos_recursive forward_;
    KDL::ChainJntToJacSolver jacobian_;
    KDL::ChainIkSolverVel_pinv velocity_;
    KDL::ChainIkSolverPos_LMA levenbergMarquardt_;
    KDL::ChainIkSolverPos_NR_JL newton_;
};

}  // namespace kine::bench
