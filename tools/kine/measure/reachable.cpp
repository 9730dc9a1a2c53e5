#include "measure/reachable.h"

#include <random>

namespace kine_cli {
namespace {

constexpr double kOpenTravel = 170.0;          // deg, either way
constexpr std::uint32_t kWideSingularity = 2;  // the wider of the library's two margins
constexpr std::size_t kTriesPerTarget = 100;

class RandomJoints
{
public:
    RandomJoints(const Cell& cell, Widths widths, std::uint64_t seed)
        : cell_(cell), widths_(widths), generator_(seed)
    {}

    KineJoint Next()
    {
        KineJoint joints{};
        for (std::size_t i = 0; i < widths_.axes; ++i) {
            const bool isLimited = cell_.hasLimits && cell_.lower.Axis[i] < cell_.upper.Axis[i];
            joints.Axis[i] = isLimited ? Between(cell_.lower.Axis[i], cell_.upper.Axis[i])
                                       : Between(-kOpenTravel, kOpenTravel);
        }
        for (std::size_t i = 0; i < widths_.externalAxes; ++i) {
            const auto& travel = cell_.externalAxes[i].travel;
            if (travel) joints.ExtAxis[i] = Between(travel->first, travel->second);
        }
        return joints;
    }

private:
    // The distributions of the standard library differ from one to the next; 53 bits of the generator do not.
    double Between(double lower, double upper)
    {
        const double share = static_cast<double>(generator_() >> 11U) * 0x1p-53;
        return lower + share * (upper - lower);
    }

    const Cell& cell_;
    Widths widths_;
    std::mt19937_64 generator_;
};

}  // namespace

ReachableTargets FindReachable(const ReadyCell& ready, std::uint64_t seed, std::size_t wanted,
                               PrintedLines& printed)
{
    const CellRecords& records = ready.records;
    RandomJoints random(ready.cell, ready.widths, seed);
    ReachableTargets found;
    while (found.targets.size() < wanted && found.tried < wanted * kTriesPerTarget) {
        ++found.tried;
        ReachableTarget target;
        target.joints = random.Next();
        if (Kine_IsSingularity(&target.joints, kWideSingularity) != KINE_OK) {
            ++found.singular;
            continue;
        }
        KineJoint back{};
        KineResult code = JointsToPose(target.joints, records, Reference::kWorkObject, target.inWobj);
        if (code == KINE_OK) {
            code = Kine_WobjPosToJoint(&target.inWobj, &records.tool, &records.wobj, &records.load, &back);
        }
        if (code == KINE_OK) {
            found.targets.push_back(target);
        } else {
            ++found.refused[code];
            printed.Take();
        }
    }
    return found;
}

}  // namespace kine_cli
