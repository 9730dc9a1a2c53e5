// Every way to reach one pose: the library solves one posture and one turn of the axes at a time.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "KineDll.h"
#include "library/printed_lines.h"
#include "options.h"

namespace kine_cli {

struct Solution
{
    KineJoint joints{};
    KineArmConfig config{};
    std::size_t posture = 0;  // index into PosturesOf
};

// The answer for one posture with the turns around zero, or as near to it as the limits allow.
struct PostureAnswer
{
    KineResult code = KINE_OK;
    std::string lines;  // printed with a refusal
    KineJoint joints{};
    bool withinLimits = false;  // in some turn
};

struct Solutions
{
    std::vector<PostureAnswer> postures;  // one for each of PosturesOf
    // Every solution within the limits, posture by posture, turns in rising order; without limits one per posture, with
    // the turned axes within half a turn of zero.
    std::vector<Solution> all;
};

// The postures of an arm type in their order: Cfg4 0 to 7, or Cfg1 +1 and -1.
std::vector<KineArmConfig> PosturesOf(std::uint32_t armType);

// "front near noflip", "elbow+"
std::string PostureWords(std::uint32_t armType, const KineArmConfig& config);

// The posture that words name; every word decides one bit, in any order, those left out stay open. Fails (usage) for
// other words, with those that there are.
struct PostureChoice
{
    std::uint32_t known = 0;  // bits that the words decide
    std::uint32_t value = 0;

    bool Matches(std::size_t posture) const { return (posture & known) == value; }
};
PostureChoice PostureNamed(std::uint32_t armType, const std::string& words);

// `pose` in the work object; its configuration integers are not looked at.
Solutions Solve(const ReadyCell& ready, const KinePose& pose, PrintedLines& printed);

// The solution with the smallest sum of axis travels from `joints`; null when there is none.
const Solution* Nearest(const ReadyCell& ready, const Solutions& solutions, const KineJoint& joints,
                        const PostureChoice& choice = {});

}  // namespace kine_cli
