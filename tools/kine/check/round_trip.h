// Joints to a pose and back, over the joint space: what comes back, posture by posture.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "cell/cell.h"
#include "check/finding.h"
#include "library/printed_lines.h"

namespace kine_cli {

// The largest of a figure, and the joints where it was met.
struct Worst
{
    double value = 0.0;
    std::optional<KineJoint> joints;

    void Take(double candidate, const KineJoint& at);
};

struct PostureTally
{
    std::uint64_t same = 0;          // the joints came back
    std::uint64_t other = 0;         // other joints, with KINE_OK
    std::uint64_t nearSingular = 0;  // not tried
    std::map<KineResult, std::uint64_t> refused;
    Worst position;  // mm, of the pose of the joints that came back
    Worst rotation;  // deg
    Worst joint;     // deg, largest difference of one axis
    std::optional<KineJoint> firstOther;
    std::optional<KineJoint> firstRefused;

    std::uint64_t Refused() const;
    std::uint64_t Tried() const { return same + other + Refused(); }
    void Add(const PostureTally& more);
};

struct RoundTrip
{
    Selection selection;
    std::vector<PostureTally> postures;  // as PosturesOf orders them

    PostureTally Total() const;
};

// What "use" names, then with tool, work object and load left out one after the other; only what can
// be held together.
std::vector<Selection> CombinationsOf(const Cell& cell);

// The library holds the cell.
RoundTrip TryRoundTrip(const Cell& cell, const Selection& selection, std::size_t samples,
                       PrintedLines& printed);

// What the figures say about the cell.
void JudgeRoundTrip(const RoundTrip& trip, FindingList& findings);

// The commands that repeat one round trip.
std::string RepeatCommand(const Cell& cell, const Selection& selection, const KineJoint& joints);

// "tool gripper, work object table, load none"
std::string InWords(const Selection& selection);

}  // namespace kine_cli
