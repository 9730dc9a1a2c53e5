// The command line of the program as plain data, for what is written about it: completions and the man page.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace kine_cli {

enum class Completes
{
    kNothing,  // numbers and names that nobody else knows
    kWords,
    kFiles,
    kCells  // files *.json
};

struct ArgumentInfo
{
    std::vector<std::string> names;  // "-i", "--input"; of a positional its name alone
    std::string help;
    std::string value;  // what stands for the value, such as FILE; empty for a flag
    std::vector<std::string> words;
    std::string otherwise;  // the value when it is not given
    Completes completes = Completes::kNothing;
    bool isRequired = false;
    bool isRepeated = false;

    bool IsFlag() const { return value.empty(); }
};

struct CommandInfo
{
    std::string path;  // "kine fk"
    std::string name;
    std::string about;
    std::string footer;
    std::vector<ArgumentInfo> options;
    std::vector<ArgumentInfo> positionals;
    std::vector<CommandInfo> commands;
};

CommandInfo DescribeProgram(const CLI::App& program);

// Calls visit(command) for a command and all below it.
template <typename Visit>
void ForEachCommand(const CommandInfo& command, const Visit& visit)
{
    visit(command);
    for (const CommandInfo& below : command.commands) ForEachCommand(below, visit);
}

// "fk [OPTIONS] CELL [JOINTS...]" behind the path
std::string UsageOf(const CommandInfo& command);

}  // namespace kine_cli
