#include "help/command_tree.h"

#include <CLI/CLI.hpp>

#include <utility>

namespace kine_cli {
namespace {

// "{base,world}" in the type of an option -> its words
std::vector<std::string> WordsIn(const std::string& type)
{
    const std::size_t start = type.find(":{");
    const std::size_t end = type.find('}', start == std::string::npos ? 0 : start);
    if (start == std::string::npos || end == std::string::npos) return {};
    return CLI::detail::split(type.substr(start + 2, end - start - 2), ',');
}

Completes CompletionOf(const ArgumentInfo& argument)
{
    if (!argument.words.empty()) return Completes::kWords;
    if (argument.value == "CELL") return Completes::kCells;
    return argument.value.find("FILE") != std::string::npos ? Completes::kFiles : Completes::kNothing;
}

ArgumentInfo Describe(const CLI::Option& option)
{
    const std::string type = option.get_type_name();
    ArgumentInfo info;
    info.help = option.get_description();
    info.words = WordsIn(type);
    info.otherwise = option.get_default_str();
    info.isRequired = option.get_required();
    if (option.get_positional()) {
        info.names = {option.get_name(true)};
        info.value = info.names.front();
        info.isRepeated = option.get_expected_max() > 1;
    } else {
        for (const std::string& name : option.get_snames()) info.names.push_back("-" + name);
        for (const std::string& name : option.get_lnames()) info.names.push_back("--" + name);
        if (option.get_items_expected_max() > 0) info.value = type.substr(0, type.find(':'));
        info.isRepeated = option.get_items_expected_max() > 1;
    }
    info.completes = CompletionOf(info);
    return info;
}

// An option group is a command without a name; its options, but for a --help of its own, belong to the
// command around it.
void AddArguments(const CLI::App& app, CommandInfo& info)
{
    for (const CLI::Option* option : app.get_options()) {
        const bool isHidden = option->get_group().empty();
        const bool isSecondHelp = app.get_name().empty() && option == app.get_help_ptr();
        if (!isHidden && !isSecondHelp)
            (option->get_positional() ? info.positionals : info.options).push_back(Describe(*option));
    }
}

CommandInfo Describe(const CLI::App& app, const std::string& path)
{
    CommandInfo info;
    info.path = path + app.get_name();
    info.name = app.get_name();
    info.about = app.get_description();
    info.footer = app.get_footer();
    AddArguments(app, info);
    for (const CLI::App* below : app.get_subcommands([](const CLI::App*) { return true; })) {
        if (below->get_name().empty()) {
            AddArguments(*below, info);
        } else {
            info.commands.push_back(Describe(*below, info.path + " "));
        }
    }
    return info;
}

}  // namespace

CommandInfo DescribeProgram(const CLI::App& program) { return Describe(program, ""); }

std::string UsageOf(const CommandInfo& command)
{
    std::string usage = command.commands.empty() ? "[OPTIONS]" : "COMMAND";
    for (const ArgumentInfo& argument : command.positionals) {
        const std::string name = argument.value + (argument.isRepeated ? "..." : "");
        usage += argument.isRequired ? " " + name : " [" + name + "]";
    }
    return usage;
}

}  // namespace kine_cli
