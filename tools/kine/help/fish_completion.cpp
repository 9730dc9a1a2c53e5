// The fish script has one `complete` line per option, each with the commands that must have been typed.
#include <CLI/CLI.hpp>

#include "help/completion.h"

namespace kine_cli {
namespace {

// In single quotes, where ' and \ are escaped.
std::string Quoted(const std::string& text)
{
    std::string out = "'";
    for (const char c : text) {
        if (c == '\'' || c == '\\') out += '\\';
        out += c;
    }
    return out + "'";
}

// "kine calib tool" -> what holds once all but the first have been typed
std::string ConditionOf(const CommandInfo& command)
{
    std::string condition;
    for (const std::string& word : CLI::detail::split(command.path, ' ')) {
        if (word == "kine") continue;
        condition += (condition.empty() ? "" : "; and ") + ("__fish_seen_subcommand_from " + word);
    }
    if (command.commands.empty()) return condition;
    condition += (condition.empty() ? "" : "; and ") + std::string("not __fish_seen_subcommand_from");
    for (const CommandInfo& below : command.commands) condition += " " + below.name;
    return condition;
}

std::string ValueOf(const ArgumentInfo& argument)
{
    std::string words;
    switch (argument.completes) {
        case Completes::kWords:
            for (const std::string& word : argument.words) (words += words.empty() ? "" : " ") += word;
            return " -a " + Quoted(words);
        case Completes::kFiles: return " -F";
        case Completes::kCells: return " -k -a " + Quoted("(__fish_complete_suffix .json)");
        case Completes::kNothing: break;
    }
    return {};
}

void AddLines(std::string& out, const CommandInfo& command)
{
    const std::string start = "complete -c kine -n " + Quoted(ConditionOf(command));
    for (const CommandInfo& below : command.commands)
        out += start + " -a " + below.name + " -d " + Quoted(below.about) + "\n";
    for (const ArgumentInfo& option : command.options) {
        out += start;
        for (const std::string& name : option.names)
            out += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
        // -x: a value and no files beside it
        if (!option.IsFlag())
            out += (option.completes == Completes::kFiles ? " -r" : " -x") + ValueOf(option);
        out += " -d " + Quoted(option.help) + "\n";
    }
    for (const ArgumentInfo& positional : command.positionals) {
        if (positional.completes != Completes::kNothing) out += start + ValueOf(positional) + "\n";
    }
}

}  // namespace

std::string FishCompletion(const CommandInfo& program)
{
    std::string out = "# fish completion for kine, written by `kine completion fish`.\ncomplete -c kine -f\n";
    ForEachCommand(program, [&](const CommandInfo& command) { AddLines(out, command); });
    return out;
}

}  // namespace kine_cli
