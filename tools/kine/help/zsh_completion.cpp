// The zsh script has one function per command, each a call of _arguments.
#include <algorithm>

#include "help/completion.h"

namespace kine_cli {
namespace {

// In single quotes, where ' ends them.
std::string Quoted(const std::string& text)
{
    std::string out = "'";
    for (const char c : text) out += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return out + "'";
}

// In the words that _arguments takes, brackets and colons part fields.
std::string Escaped(const std::string& text)
{
    std::string out;
    for (const char c : text) {
        if (c == '[' || c == ']' || c == ':' || c == '\\') out += '\\';
        out += c;
    }
    return out;
}

std::string ActionOf(const ArgumentInfo& argument)
{
    std::string words;
    switch (argument.completes) {
        case Completes::kWords:
            for (const std::string& word : argument.words)
                (words += words.empty() ? "" : " ") += Escaped(word);
            return "(" + words + ")";
        case Completes::kFiles: return "_files";
        case Completes::kCells: return "_files -g \"*.json(-.)\"";
        case Completes::kNothing: break;
    }
    return " ";
}

std::string FunctionOf(const CommandInfo& command)
{
    std::string name = "_" + command.path;
    std::replace(name.begin(), name.end(), ' ', '_');
    return name;
}

std::string ValueOf(const ArgumentInfo& argument)
{
    return ":" + Escaped(argument.value) + ":" + ActionOf(argument);
}

std::string OptionLines(const ArgumentInfo& option)
{
    std::string all;
    for (const std::string& name : option.names) (all += all.empty() ? "" : " ") += name;
    std::string out;
    for (const std::string& name : option.names) {
        // One name bars the others; a long one may have its value behind an equals sign.
        const bool isLong = name.starts_with("--");
        const std::string start = option.names.size() > 1 ? "(" + all + ")" + name : name;
        out += " \\\n        " +
               Quoted(start +
                      (option.IsFlag() ? ""
                       : isLong        ? "="
                                       : "+") +
                      "[" + Escaped(option.help) + "]" + (option.IsFlag() ? "" : ValueOf(option)));
    }
    return out;
}

void AddFunction(std::string& out, const CommandInfo& command)
{
    out += "\n" + FunctionOf(command) + "() {\n";
    if (!command.commands.empty()) out += "    local curcontext=$curcontext state line\n";
    out += "    _arguments -s";
    if (!command.commands.empty()) out += " -C";
    for (const ArgumentInfo& option : command.options) out += OptionLines(option);
    if (command.commands.empty()) {
        for (const ArgumentInfo& positional : command.positionals) {
            const std::string start = positional.isRepeated ? "*" : positional.isRequired ? "" : ":";
            out += " \\\n        " + Quoted(start + ValueOf(positional));
        }
        out += "\n}\n";
        return;
    }
    out += " \\\n        ':command:->command' \\\n        '*::argument:->argument'\n";
    out += "    case $state in\n    command)\n        local -a commands=(\n";
    for (const CommandInfo& below : command.commands)
        out += "            " + Quoted(below.name + ":" + Escaped(below.about)) + "\n";
    out +=
        "        )\n        _describe command commands\n        ;;\n    argument)\n        case $line[1] "
        "in\n";
    for (const CommandInfo& below : command.commands)
        out += "        " + below.name + ") " + FunctionOf(below) + " ;;\n";
    out += "        esac\n        ;;\n    esac\n}\n";
}

}  // namespace

std::string ZshCompletion(const CommandInfo& program)
{
    std::string out = "#compdef kine\n# zsh completion for kine, written by `kine completion zsh`.\n";
    ForEachCommand(program, [&](const CommandInfo& command) { AddFunction(out, command); });
    // Read by the completion system the file is the function itself; sourced it only registers it.
    return out +
           "\nif [ \"$funcstack[1]\" = \"_kine\" ]; then\n    _kine \"$@\"\nelse\n    compdef _kine "
           "kine\nfi\n";
}

}  // namespace kine_cli
