// The bash script is a table of the command line, as one function, and one that walks the words typed so far.
// It needs neither the package bash-completion nor a bash younger than 3.2.
#include "help/completion.h"

namespace kine_cli {
namespace {

constexpr const char* kHead =
    "# bash completion for kine, written by `kine completion bash`.\n"
    "\n";

constexpr const char* kWalk = R"(
_kine() {
    local IFS=$'\n' current=${COMP_WORDS[COMP_CWORD]} path=kine takes= position=0 i word
    COMPREPLY=()
    # An equals sign is a word of its own here: the value of an option may come behind it.
    for ((i = 1; i < COMP_CWORD; i++)); do
        word=${COMP_WORDS[i]}
        if [[ $word == = ]]; then
            continue
        elif [[ -n $takes ]]; then
            takes=
        elif [[ $word == -?* && $word != -[0-9.]* ]]; then
            _kine_takes "$path" "$word"
        else
            _kine_takes "$path" ' commands'
            if [[ $'\n'"$takes"$'\n' == *$'\n'"$word"$'\n'* ]]; then
                path="$path $word"
            else
                position=$((position + 1))
            fi
            takes=
        fi
    done
    [[ $current == = ]] && current=
    if [[ -z $takes && $current == -* ]]; then
        _kine_takes "$path" ' options'
    elif [[ -z $takes ]]; then
        _kine_takes "$path" ' commands'
        [[ -n $takes ]] || _kine_takes "$path" "$position"
        [[ -n $takes ]] || _kine_takes "$path" ' rest'
    fi
    case $takes in
    @file)
        compopt -o filenames 2>/dev/null
        COMPREPLY=($(compgen -f -- "$current"))
        ;;
    @cell)
        compopt -o filenames 2>/dev/null
        COMPREPLY=($(compgen -f -X '!*.json' -- "$current") $(compgen -d -- "$current"))
        ;;
    '' | @any) ;;
    *) COMPREPLY=($(compgen -W "$takes" -- "$current")) ;;
    esac
}

complete -F _kine kine
)";

// As an argument of the shell: one word per line.
std::string Lines(const std::vector<std::string>& words)
{
    std::string text = "$'";
    for (const std::string& word : words) (text += text.size() > 2 ? "\\n" : "") += word;
    return text + "'";
}

std::string TakenBy(const ArgumentInfo& argument)
{
    switch (argument.completes) {
        case Completes::kWords: return Lines(argument.words);
        case Completes::kFiles: return "@file";
        case Completes::kCells: return "@cell";
        case Completes::kNothing: break;
    }
    return "@any";
}

void AddCase(std::string& out, const std::string& patterns, const std::string& takes)
{
    out += "    " + patterns + ") takes=" + takes + " ;;\n";
}

void AddCases(std::string& out, const CommandInfo& command)
{
    const auto quoted = [&](const std::string& key) { return "'" + command.path + " " + key + "'"; };
    std::vector<std::string> names;
    for (const ArgumentInfo& option : command.options) {
        std::string patterns;
        for (const std::string& name : option.names) {
            patterns += (patterns.empty() ? "" : " | ") + quoted(name);
            names.push_back(name);
        }
        if (!option.IsFlag()) AddCase(out, patterns, TakenBy(option));
    }
    AddCase(out, quoted(" options"), Lines(names));
    if (!command.commands.empty()) {
        std::vector<std::string> below;
        for (const CommandInfo& info : command.commands) below.push_back(info.name);
        AddCase(out, quoted(" commands"), Lines(below));
    }
    for (std::size_t i = 0; i < command.positionals.size(); ++i) {
        const ArgumentInfo& positional = command.positionals[i];
        AddCase(out, quoted(std::to_string(i)), TakenBy(positional));
        if (positional.isRepeated) AddCase(out, quoted(" rest"), TakenBy(positional));
    }
}

}  // namespace

std::string BashCompletion(const CommandInfo& program)
{
    std::string out = kHead;
    out +=
        "# Sets takes to what may follow: words, @file, @cell, @any for what nobody knows, nothing for a "
        "flag.\n";
    out += "_kine_takes() {\n    case \"$1 $2\" in\n";
    ForEachCommand(program, [&](const CommandInfo& command) { AddCases(out, command); });
    out += "    *) takes= ;;\n    esac\n}\n";
    return out + kWalk;
}

}  // namespace kine_cli
