// The contests. Targets are where the rigid arm brings the tool at random regular joints; KDL starts within
// five degrees of these joints, the library from nothing but the target. The arm with link errors and gravity
// solves the same targets with joints of its own.
#include "kdl_contests.h"

#include <cmath>
#include <limits>
#include <stdexcept>
#include <utility>

#include "inner_steps.h"
#include "kdl_arms.h"

namespace kine::bench {

namespace {

constexpr std::uint64_t kJointSeed = 6301;
constexpr std::uint64_t kSeedSeed = 6302;
constexpr double kSeedDistanceDeg = 5.0;
constexpr double kAgreementMm = 1e-9;
constexpr double kAgreementRad = 1e-9;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

constexpr const char* kForward = "KDL forward";
constexpr const char* kForwardAxes = "KDL forward and Jacobian";
constexpr const char* kLma = "KDL Levenberg-Marquardt, near seed";
constexpr const char* kNewton = "KDL Newton with limits, near seed";
constexpr const char* kModelAxes = "model chain with Jacobian axes";
constexpr const char* kRigid = "rigid";
constexpr const char* kTilts = "tilts";

struct Target
{
    KineJoint joints;
    KinePose pose;  // in the work object
    KDL::JntArray kdlJoints, kdlSeed;
    KDL::Frame kdlPose;  // in the base
};

// One arm, its targets, and what the solvers write to.
struct Match
{
    Match(Arm rigidArm, Cell itsCell, const KineFrame& tool)
        : arm(std::move(rigidArm)),
          cell(std::move(itsCell)),
          kdl(arm, tool),
          solution(JointCount()),
          axes(JointCount())
    {}

    [[nodiscard]] unsigned JointCount() const { return arm.type == KINE_ARM_SIX_AXIS ? 6 : 4; }

    Arm arm;
    Cell cell;
    std::vector<Target> targets;
    KdlArm kdl;
    KDL::Frame pose;
    KDL::JntArray solution;
    KDL::Jacobian axes;
};

KineJoint Nudged(const KineJoint& joints, unsigned count, test::SeededRandom& random)
{
    KineJoint seed = joints;
    for (unsigned i = 0; i < count; ++i) seed.Axis[i] += random.Uniform(-kSeedDistanceDeg, kSeedDistanceDeg);
    return seed;
}

// Where both have the tool, compared in the base. Of a tilted four-axis arm the library gives the heading
// alone.
Residual Disagreement(const Arm& arm, const KineFrame& ours, const KDL::Frame& theirs)
{
    if (arm.type == KINE_ARM_SIX_AXIS) return KdlResidualOf(KdlFrameOf(ours), theirs);
    const double heading = std::atan2(theirs.M(1, 0), theirs.M(0, 0));
    const double position = (KdlFrameOf(ours).p - theirs.p).Norm() / kMetresPerMm;
    return {position, std::fabs(std::remainder(heading - ours.A * kRadPerDeg, 2.0 * std::acos(-1.0)))};
}

void MakeTargets(Match& match, const Plan& plan)
{
    SetUp(match.arm, match.cell);
    const test::CellRecords& cell = match.cell.records;
    test::SeededRandom random(kSeedSeed);
    for (const KineJoint& joints : test::RegularJoints(match.arm.type, cell, plan.targets, kJointSeed)) {
        Target target{};
        target.joints = joints;
        target.kdlJoints = KdlJointsOf(match.arm, joints);
        target.kdlSeed = KdlJointsOf(match.arm, Nudged(joints, match.JointCount(), random));
        KinePose base{};
        if (Kine_JointToWobjPos(&joints, &cell.tool, &cell.wobj, &cell.load, &target.pose) != KINE_OK ||
            Kine_JointToBasePos(&joints, &cell.tool, &cell.wobj, &cell.load, &base) != KINE_OK ||
            !match.kdl.Forward(target.kdlJoints, target.kdlPose)) {
            throw std::runtime_error("a forward call fails on " + match.arm.name);
        }
        const Residual apart = Disagreement(match.arm, base.Frame, target.kdlPose);
        if (!(apart.mm <= kAgreementMm && apart.rad <= kAgreementRad)) {
            throw std::runtime_error("KDL and the library disagree about " + match.arm.name);
        }
        match.targets.push_back(target);
    }
}

Verdict JudgeKdl(Match& match, std::size_t i, bool success)
{
    if (!success || !match.kdl.Forward(match.solution, match.pose)) return {false, kNan, kNan};
    const Residual left = KdlResidualOf(match.pose, match.targets[i].kdlPose);
    return {true, left.mm, left.rad};
}

Contestant KdlInverse(Match& match, const char* name,
                      bool (KdlArm::*solve)(const KDL::JntArray&, const KDL::Frame&, KDL::JntArray&))
{
    const auto run = [&match, solve](std::size_t i) {
        const Target& target = match.targets[i];
        return (match.kdl.*solve)(target.kdlSeed, target.kdlPose, match.solution);
    };
    return {name,
            {},
            [run](std::size_t i) { static_cast<void>(run(i)); },
            [&match, run](std::size_t i) { return JudgeKdl(match, i, run(i)); }};
}

std::vector<Contestant> KdlContestants(Match& match)
{
    const auto forward = [&match](std::size_t i) {
        return match.kdl.Forward(match.targets[i].kdlJoints, match.pose);
    };
    const auto axes = [&match, forward](std::size_t i) {
        return forward(i) && match.kdl.Axes(match.targets[i].kdlJoints, match.axes);
    };
    return {{kForward,
             {},
             [forward](std::size_t i) { static_cast<void>(forward(i)); },
             [forward](std::size_t i) {
                 return Verdict{forward(i), kNan, kNan};
             }},
            {kForwardAxes,
             {},
             [axes](std::size_t i) { static_cast<void>(axes(i)); },
             [axes](std::size_t i) {
                 return Verdict{axes(i), kNan, kNan};
             }},
            KdlInverse(match, kLma, &KdlArm::LevenbergMarquardt),
            KdlInverse(match, kNewton, &KdlArm::NewtonWithLimits)};
}

std::string WorldName(const std::string& kind) { return "Kine_JointToWorldPos, " + kind; }
std::string InverseName(const std::string& kind) { return "Kine_WobjPosToJoint, " + kind; }

// The library on an arm with the targets of the match; kind says which of the arms it is.
std::vector<Contestant> LibraryContestants(const Match& match, const Arm& arm, const std::string& kind)
{
    const auto world = [&match](std::size_t i) {
        const test::CellRecords& cell = match.cell.records;
        KinePose pose{};
        return Kine_JointToWorldPos(&match.targets[i].joints, &cell.tool, &cell.wobj, &cell.load, &pose) ==
               KINE_OK;
    };
    const auto inverse = [&match](std::size_t i, KineJoint& joints) {
        const test::CellRecords& cell = match.cell.records;
        return Kine_WobjPosToJoint(&match.targets[i].pose, &cell.tool, &cell.wobj, &cell.load, &joints) ==
               KINE_OK;
    };
    const auto judged = [&match, inverse](std::size_t i) {
        const test::CellRecords& cell = match.cell.records;
        KineJoint joints{};
        KinePose reached{};
        if (!inverse(i, joints) ||
            Kine_JointToWobjPos(&joints, &cell.tool, &cell.wobj, &cell.load, &reached) != KINE_OK) {
            return Verdict{false, kNan, kNan};
        }
        const Residual left = ResidualOf(reached.Frame, match.targets[i].pose.Frame);
        return Verdict{true, left.mm, left.rad};
    };
    const auto prepare = [&match, arm] { SetUp(arm, match.cell); };
    return {{WorldName(kind), prepare, [world](std::size_t i) { static_cast<void>(world(i)); },
             [world](std::size_t i) {
                 return Verdict{world(i), kNan, kNan};
             }},
            {InverseName(kind), prepare,
             [inverse](std::size_t i) {
                 KineJoint joints{};
                 static_cast<void>(inverse(i, joints));
             },
             judged}};
}

void Append(std::vector<Contestant>& list, const std::vector<Contestant>& more)
{
    list.insert(list.end(), more.begin(), more.end());
}

// Of the library's own rows.
void RequireQuietSuccess(const std::vector<Standing>& standings, const std::string& kind, Results& results)
{
    for (const std::string& name : {WorldName(kind), InverseName(kind)}) {
        const Standing& standing = StandingOf(standings, name);
        results.Require(standing.success == 1.0, name + " fails on a regular target");
        results.Require(standing.allocations == 0.0, name + " allocates");
    }
}

void AddAccuracy(const Standing& inverse, const SixAxisPair& pair, Results& results)
{
    const std::string figure =
        "inverse over the regular targets, " + pair.title + " with " + pair.bent + ": ";
    results.Add({figure + "success", 100.0 * inverse.success, "%", 100.0, 100.0, Better::kHigher});
    results.Add({figure + "largest residual", inverse.largestMm, "mm", 1e-6, 1e-7, Better::kLower});
    results.Add({figure + "largest residual", inverse.largestRad, "rad", 1e-8, 1e-9, Better::kLower});
    results.Add({figure + "allocations per call", inverse.allocations, "", 0.0, 0.0, Better::kLower});
    results.Require(inverse.largestMm <= 1e-6 && inverse.largestRad <= 1e-8, figure + "largest residual");
}

void AddSixAxisBars(const std::vector<Standing>& standings, const SixAxisPair& pair, Results& results)
{
    const auto median = [&](const std::string& name) { return StandingOf(standings, name).Median(); };
    const std::string arm = pair.title + " with " + pair.bent;
    const double inverse = median(InverseName(pair.bent));
    results.Add({"`Kine_WobjPosToJoint`, " + arm + ": faster than KDL LMA from within 5\u00b0",
                 median(kLma) / inverse, "x", 30, 39, Better::kHigher});
    results.Add({"`Kine_WobjPosToJoint`, " + arm + ": faster than KDL Newton with limits from within 5\u00b0",
                 median(kNewton) / inverse, "x", 12, 16, Better::kHigher});
    results.Add({"`Kine_JointToWorldPos`, " + arm + ", all included: time against the bare chain of KDL",
                 median(WorldName(pair.bent)) / median(kForward), "x", 1.3, 1.1, Better::kLower});
    results.Add({"model chain with Jacobian axes, " + pair.title + ": faster than KDL forward and Jacobian",
                 median(kForwardAxes) / median(kModelAxes), "x", 4.5, 6, Better::kHigher});
    AddAccuracy(StandingOf(standings, InverseName(pair.bent)), pair, results);
}

}  // namespace

void CompareSixAxis(const Plan& plan, const SixAxisPair& pair, Results& results)
{
    const Cell cell = CellCalled("loads_frames");
    Match match(ArmCalled(pair.rigidArm), cell, cell.records.tool.TFrame);
    MakeTargets(match, plan);

    std::vector<Contestant> contestants = KdlContestants(match);
    Append(contestants, LibraryContestants(match, match.arm, kRigid));
    Append(contestants, LibraryContestants(match, ArmCalled(pair.bentArm), pair.bent));

    // On the calibrated wrist arm for either pair: its lengths make no difference to the time.
    std::vector<KineJoint> joints;
    for (const Target& target : match.targets) joints.push_back(target.joints);
    PrepareInnerSteps(joints, {});
    contestants.push_back({kModelAxes, {}, InnerStepCalled(kChainWithAxes).run, {}});

    const std::vector<Standing> standings = Compete(plan, contestants);
    results.Add("Six-axis " + pair.title, standings);
    RequireQuietSuccess(standings, kRigid, results);
    RequireQuietSuccess(standings, pair.bent, results);
    AddSixAxisBars(standings, pair, results);
}

void CompareFourAxis(const Plan& plan, Results& results)
{
    const Cell cell = CellCalled("loads_frames");
    KineFrame tool = cell.records.tool.TFrame;
    tool.B = tool.C = 0.0;  // not read by the four-axis arms
    Match match(ArmCalled("four_axis_tilts"), cell, tool);
    MakeTargets(match, plan);

    std::vector<Contestant> contestants = KdlContestants(match);
    Append(contestants, LibraryContestants(match, match.arm, kTilts));
    const std::vector<Standing> standings = Compete(plan, contestants);
    results.Add("Four-axis arm with tilts", standings);
    RequireQuietSuccess(standings, kTilts, results);

    results.Add({"`Kine_WobjPosToJoint`, four-axis arm with tilts: faster than KDL LMA from within 5\u00b0",
                 StandingOf(standings, kLma).Median() / StandingOf(standings, InverseName(kTilts)).Median(),
                 "x", 40, 48, Better::kHigher});
}

}  // namespace kine::bench
