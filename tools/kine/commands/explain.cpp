// kine explain: result codes in words.
#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>
#include <vector>

#include "commands/commands.h"
#include "library/code_search.h"
#include "library/codes.h"
#include "rows/stream.h"
#include "text/numbers.h"

namespace kine_cli {
namespace {

using kinedll::CodeText;

constexpr std::size_t kLineWidth = 80;

struct ExplainOptions
{
    std::vector<std::string> asked;
    bool all = false;
    FormatOptions format;
};

struct Explanation
{
    std::string asked;
    const CodeText* text = nullptr;
    std::string step;
};

// The texts of a code have their causes parted by semicolons.
std::vector<std::string> CausesOf(const CodeText& text)
{
    std::vector<std::string> causes;
    std::string_view rest = text.cause;
    while (!rest.empty()) {
        const std::size_t end = rest.find("; ");
        causes.emplace_back(rest.substr(0, end));
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 2);
    }
    return causes;
}

// As the library prints it.
std::int64_t PrintedNumber(KineResult code) { return static_cast<std::int32_t>(code); }

// Text in lines that fit a terminal; those behind the first start with blanks below the text.
std::string Wrapped(const std::string& start, std::string_view text)
{
    std::string out = start;
    std::size_t column = start.size();
    bool isFirst = true;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        if (!isFirst && column + 1 + end > kLineWidth) {
            out += '\n' + std::string(start.size(), ' ');
            column = start.size();
        } else if (!isFirst) {
            out += ' ';
            ++column;
        }
        out += text.substr(0, end);
        column += end;
        isFirst = false;
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return out + '\n';
}

std::string InFull(const Explanation& explanation)
{
    const CodeText& text = *explanation.text;
    std::string out = HexCode(text.code) + " " + text.name + " (printed as " +
                      std::to_string(PrintedNumber(text.code)) + ")\n";
    if (!explanation.step.empty()) out += Wrapped("  Where: ", explanation.step);
    out += "  Causes:\n";
    for (const std::string& cause : CausesOf(text)) out += Wrapped("    - ", cause);
    out += "  What to do:\n";
    return out + Wrapped("    ", text.remedy);
}

std::string AsJson(const Explanation& explanation)
{
    const CodeText& text = *explanation.text;
    nlohmann::ordered_json row;
    if (!explanation.asked.empty()) row["asked"] = explanation.asked;
    row["code"] = HexCode(text.code);
    row["printed_as"] = PrintedNumber(text.code);
    row["name"] = text.name;
    if (!explanation.step.empty()) row["where"] = explanation.step;
    row["causes"] = CausesOf(text);
    row["remedy"] = text.remedy;
    return row.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

std::string ListLine(const CodeText& text)
{
    std::string line = HexCode(text.code);
    line.resize(11, ' ');
    const std::string number = std::to_string(PrintedNumber(text.code));
    line += std::string(5 - number.size(), ' ') + number + "  " + text.name;
    line.resize(46, ' ');
    return line + text.cause + "\n";
}

Explanation Search(const std::string& asked)
{
    const std::string_view word = Trim(asked);
    const CodeText* text = CodeOfWord(word);
    return {asked, text ? text : CodeInLine(word), StepInLine(word)};
}

[[noreturn]] void FailUnknown(const std::string& asked)
{
    std::string message;
    AppendJsonText(message, asked);
    message += " is no result code";
    const CodeText* nearest = NearestCode(Trim(asked));
    if (nearest) message += "; the nearest is " + HexCode(nearest->code) + " " + nearest->name;
    FailUsage(message + ". `kine explain --all` lists them all.");
}

// A line whose words came as arguments of their own, or each argument for itself.
std::vector<Explanation> Explanations(const std::vector<std::string>& asked)
{
    std::vector<Explanation> explanations;
    for (const std::string& argument : asked) explanations.push_back(Search(argument));
    const bool startsWithCode = explanations.front().text || NearestCode(Trim(asked.front()));
    if (asked.size() > 1 && !startsWithCode) {
        std::string line;
        for (const std::string& argument : asked) (line += line.empty() ? "" : " ") += argument;
        if (const Explanation whole = Search(line); whole.text) return {whole};
    }
    for (const Explanation& explanation : explanations) {
        if (!explanation.text) FailUnknown(explanation.asked);
    }
    return explanations;
}

ExitCode RunExplain(const ExplainOptions& options, PrintedLines& printed)
{
    if (options.all != options.asked.empty())
        FailUsage(options.all ? "--all takes no codes" : "no code: give one, or --all for the list");
    std::string out;
    if (options.all) {
        for (const CodeText& text : kinedll::kCodeTexts)
            out += options.format.json ? AsJson({{}, &text, {}}) : ListLine(text);
    } else {
        for (const Explanation& explanation : Explanations(options.asked)) {
            if (!options.format.json && !out.empty()) out += '\n';
            out += options.format.json ? AsJson(explanation) : InFull(explanation);
        }
    }
    WriteAll(printed.DataDescriptor(), out);
    return ExitCode::kDone;
}

}  // namespace

void AddExplain(CLI::App& program, Action& action)
{
    const auto options = std::make_shared<ExplainOptions>();
    CLI::App& command =
        *program.add_subcommand("explain", "Result codes: their name, every cause, and what to do");
    command.add_option("CODE", options->asked,
                       "0x6097, 6097, 24727 as the library prints it, a name, or a line that holds a code");
    command.add_flag("--all", options->all, "List every code, one per line");
    options->format.AddTo(command, false);
    command.footer(
        "Examples:\n"
        "  kine explain 0x6097\n"
        "  kine explain KINE_ERR_WOBJ 24727\n"
        "  kine explain \"IK error 5:24727\"\n"
        "  kine explain --all | grep positioner");
    SetAction(command, action, options, RunExplain);
}

}  // namespace kine_cli
