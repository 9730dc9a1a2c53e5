// Every way to reach one pose: the library solves one posture and one turn of the axes at a time.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
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
    bool withinLimits = false;  // in a turn that the library leads to
};

struct Solutions
{
    std::vector<PostureAnswer> postures;  // one for each of PosturesOf
    // Every solution within the limits, posture by posture, turns in rising order; an axis without limits
    // has the turn around zero. Each has the integers that lead the library to it; axes without a turn number
    // stand as the library gives them. A chain far from the nominal arm may lead from two postures to the
    // same joints: these are listed once.
    std::vector<Solution> all;
};

// The postures of an arm type in their order: Cfg4 0 to 7, or Cfg1 +1 and -1.
std::vector<KineArmConfig> PosturesOf(std::uint32_t armType);

// "front near plain", "elbow+"
std::string PostureWords(std::uint32_t armType, const KineArmConfig& config);

// The posture that words name; every word decides one bit, in any order, those left out stay open. Fails
// (usage) for other words, with those that there are.
struct PostureChoice
{
    std::uint32_t known = 0;  // bits that the words decide
    std::uint32_t value = 0;

    bool Matches(std::size_t posture) const { return (posture & known) == value; }
};
PostureChoice PostureNamed(std::uint32_t armType, const std::string& words);

// Its place in PosturesOf.
std::size_t PostureIndex(std::uint32_t armType, const KineArmConfig& config);

// The words of every posture, put together once for many rows.
class PostureTexts
{
public:
    explicit PostureTexts(std::uint32_t armType);

    std::string_view Of(std::size_t posture) const { return texts_[posture]; }
    std::string_view Of(const KineArmConfig& config) const { return texts_[PostureIndex(armType_, config)]; }
    std::size_t Longest() const;

private:
    std::uint32_t armType_;
    std::vector<std::string> texts_;
};

// `pose` in the work object; its configuration integers are not looked at. With `near` only the turns that
// lie nearest to these joints, also of axes without limits: one solution for each posture.
Solutions Solve(const ReadyCell& ready, const KinePose& pose, PrintedLines& printed,
                const KineJoint* near = nullptr);

// Axes that have no turn within the limits; those whose turns the library cannot choose as they are.
std::vector<std::size_t> AxesOutside(const ReadyCell& ready, const KineJoint& joints);

// Sum of the axis travels between two joint sets, deg.
double Travel(const ReadyCell& ready, const KineJoint& a, const KineJoint& b);

// The solution with the smallest sum of axis travels from `joints`; null when there is none.
const Solution* Nearest(const ReadyCell& ready, const Solutions& solutions, const KineJoint& joints,
                        const PostureChoice& choice = {});

}  // namespace kine_cli
