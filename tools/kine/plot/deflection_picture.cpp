// How far the tool is from where a rigid arm would have it, for the joints that bring the real one to the
// target. The library holds one arm, so the two are set up in turn, row by row.
#include <algorithm>
#include <array>
#include <cmath>

#include "plot/pictures.h"
#include "plot/plane_map.h"
#include "text/numbers.h"

namespace kine_cli {
namespace {

constexpr MapClass kTakenAsRigid = 1;
constexpr MapClass kFirstBin = 2;
constexpr std::array<std::string_view, 8> kBrowns = {"#fff3c4", "#fde19a", "#fbc967", "#f3a942",
                                                     "#e3852b", "#c4651d", "#9c4a17", "#6f3112"};

void RequireBending(const ReadyCell& ready)
{
    const Cell& cell = ready.cell;
    if (!cell.IsSixAxis())
        FailUsage(cell.PlaceOf("arm.type") + ": a four-axis arm counts as rigid: no deflection");
    const KineSixAxisParam& p = cell.param.SixAxis;
    if (!(p.k2 > 0.0 && p.k3 > 0.0 && p.k5 > 0.0)) {
        FailUsage(cell.PlaceOf("arm") +
                  ": the arm counts as rigid: k2_Nm_per_rad, k3_Nm_per_rad and k5_Nm_per_rad should all be "
                  "above 0");
    }
    constexpr std::size_t kUsedWeights = 6;
    const bool hasWeights = std::any_of(p.G, p.G + kUsedWeights, [](double weight) { return weight != 0.0; });
    if (!hasWeights && ready.records.tool.TLoad.Mass == 0.0 && ready.records.load.Mass == 0.0) {
        FailUsage(cell.PlaceOf("arm") +
                  ": nothing bends the arm: weights_Nmm, the load of the tool and the load are 0");
    }
}

// One posture of one target.
struct BentPose
{
    std::size_t column;
    KineJoint joints;
    KineFrame bent;
};

class DeflectionMap
{
public:
    DeflectionMap(const ReadyCell& ready, PlaneMap& map, const PostureChoice& choice, PrintedLines& printed)
        : map_(map), choice_(choice), printed_(printed), real_(ready.cell), rigid_(ready.cell)
    {
        KineSixAxisParam& p = rigid_.param.SixAxis;
        p.k2 = p.k3 = p.k5 = 0.0;
        values_.assign(map.Columns() * map.Rows(), kNotReached);
    }

    void Measure()
    {
        for (std::size_t row = 0; row < map_.Rows(); ++row) MeasureRow(row);
    }
    bool IsReached() const
    {
        return std::any_of(values_.begin(), values_.end(), [](double value) { return value >= 0.0; });
    }
    // The first of equal ones.
    std::size_t Largest() const
    {
        return static_cast<std::size_t>(std::max_element(values_.begin(), values_.end()) - values_.begin());
    }
    double Value(std::size_t index) const { return values_[index]; }

private:
    static constexpr double kNotReached = -1.0;

    void MeasureRow(std::size_t row)
    {
        std::vector<BentPose> poses;
        for (std::size_t column = 0; column < map_.Columns(); ++column) AddPoses(column, row, poses);
        if (poses.empty()) return;
        RequireSetUp(rigid_, printed_);
        for (const BentPose& pose : poses) {
            KinePose rigid{};
            if (Forward(pose.joints, rigid) != KINE_OK) continue;
            const KineFrame& a = rigid.Frame;
            const KineFrame& b = pose.bent;
            double& value = values_[row * map_.Columns() + pose.column];
            value = std::max(value, std::hypot(a.X - b.X, a.Y - b.Y, a.Z - b.Z));
        }
        RequireSetUp(real_, printed_);
    }

    // Turns of the axes change nothing, so the first of each posture.
    void AddPoses(std::size_t column, std::size_t row, std::vector<BentPose>& poses)
    {
        const Solutions solutions = Solve(map_.Targets(), map_.TargetAt(column, row), printed_);
        std::size_t last = solutions.postures.size();
        for (const Solution& solution : solutions.all) {
            if (!choice_.Matches(solution.posture) || solution.posture == last) continue;
            last = solution.posture;
            KinePose bent{};
            if (Forward(solution.joints, bent) == KINE_OK)
                poses.push_back({column, solution.joints, bent.Frame});
        }
    }

    KineResult Forward(const KineJoint& joints, KinePose& pose) const
    {
        return JointsToPose(joints, map_.Targets().records, Reference::kWorld, pose);
    }

    PlaneMap& map_;
    const PostureChoice& choice_;
    PrintedLines& printed_;
    const Cell& real_;
    Cell rigid_;
    std::vector<double> values_;
};

// Bins of a round width that hold all values.
struct Bins
{
    double width = 1.0;
    std::size_t count = 0;

    explicit Bins(double largest)
    {
        if (!(largest > 0.0)) return;
        width = RoundStep(largest / static_cast<double>(kBrowns.size()));
        count = std::min(static_cast<std::size_t>(largest / width) + 1, kBrowns.size());
    }
    MapClass ClassOf(double value) const
    {
        if (value < 0.0) return 0;
        // Bent joints that give the same position to the last bit are not bent.
        if (value == 0.0) return kTakenAsRigid;
        return static_cast<MapClass>(kFirstBin +
                                     std::min(static_cast<std::size_t>(value / width), count - 1));
    }
    std::vector<LegendEntry> Legend() const
    {
        std::vector<LegendEntry> legend = {{"out of reach or limits", colour::kWhite},
                                           {"counts as rigid, see below", colour::kPale, true}};
        for (std::size_t i = 0; i < count; ++i) {
            // The whole range of colours, however many bins there are.
            const std::size_t shade =
                count == 1 ? kBrowns.size() / 2 : i * (kBrowns.size() - 1) / (count - 1);
            const double from = static_cast<double>(i) * width;
            legend.push_back(
                {StepText(from, width) + " to " + StepText(from + width, width) + " mm", kBrowns[shade]});
        }
        return legend;
    }
};

}  // namespace

std::string DeflectionPicture(const ReadyCell& ready, const Selection& selection, const PlaneOptions& options,
                              PrintedLines& printed)
{
    RequireBending(ready);
    const PostureChoice choice = PostureNamed(ready.cell.armType, options.posture);
    PlaneMap map(ready, selection, options, printed);
    DeflectionMap deflection(ready, map, choice, printed);
    deflection.Measure();
    if (!deflection.IsReached())
        throw Failure(ExitCode::kRefused, "kine: no target in the " + map.PlaneText() + " is within reach");
    const std::size_t largest = deflection.Largest();
    const Bins bins(deflection.Value(largest));
    for (std::size_t i = 0; i < map.Columns() * map.Rows(); ++i)
        map.Set(i % map.Columns(), i / map.Columns(), bins.ClassOf(deflection.Value(i)));

    const PlaneMap::Mark mark = {largest % map.Columns(), largest / map.Columns(),
                                 Fixed(deflection.Value(largest), 3) + " mm"};
    std::vector<std::string> notes;
    const bool bends = deflection.Value(largest) > 0.0;
    if (bends) notes.push_back("Largest: " + mark.text + " at " + map.PlaceText(mark.column, mark.row) + ".");
    notes.emplace_back(
        "Distance of the tool from where a rigid arm has it, the largest over the postures that reach the "
        "target.");
    if (map.CountOf(kTakenAsRigid) > 0)
        notes.emplace_back(
            "The library takes the arm as rigid where a joint would give way by 2 deg or more.");
    return map.Draw("deflection in the " + map.PlaneText(), bins.Legend(), notes, bends ? &mark : nullptr);
}

}  // namespace kine_cli
