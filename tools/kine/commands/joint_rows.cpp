#include "commands/joint_rows.h"

#include <algorithm>

namespace kine_cli {

Column PostureColumn(const PostureTexts& texts)
{
    constexpr std::string_view kName = "posture";
    return {std::string(kName), -static_cast<int>(std::max(texts.Longest(), kName.size())), 0};
}

std::vector<Column> JointAndPostureColumns(Widths widths, const PostureTexts& texts)
{
    std::vector<Column> columns = JointColumns(widths);
    columns.push_back(PostureColumn(texts));
    return columns;
}

std::string_view PostureOf(const KineJoint& joints, const PostureTexts& texts)
{
    KineArmConfig config{};
    // Refused for a null pointer or without an arm only.
    static_cast<void>(Kine_GetArmType(&joints, &config));
    return texts.Of(config);
}

}  // namespace kine_cli
