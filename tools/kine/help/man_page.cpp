#include "help/man_page.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace kine_cli {
namespace {

// What no command says of itself.
constexpr std::string_view kDescription =
    "answers questions about one robot cell: where its tool is, which joints bring it to a pose, how frames "
    "lie to "
    "each other. "
    "The cell stands in a file; the targets are arguments, rows of a CSV file, or rows of the standard "
    "input, "
    "so that one command feeds the next. "
    "Lengths are millimetres, angles degrees; an orientation is Rz(A) Ry(B) Rx(C).";
constexpr std::string_view kStreams =
    "Answers go to the standard output, as a table, as JSON with --json or as comma-separated values with "
    "--csv. "
    "Messages and the lines that the library prints go to the standard error, in JSON into the answer.";

constexpr std::array<std::pair<std::string_view, std::string_view>, 4> kExitStatus = {
    {{"0", "Done."},
     {"1", "The library refused a target, or a check found a fault."},
     {"2", "The command line makes no sense."},
     {"3", "A file cannot be read, or does not say what it should."}}};

constexpr std::array<std::pair<std::string_view, std::string_view>, 9> kCellKeys = {
    {{"name, about", "Text for people."},
     {"arm", "Required: type 6, 4 or 4110, and the dimensions of the arm."},
     {"limits", "lower_deg and upper_deg of each axis."},
     {"external_axes, mechanical_units, robot_on_unit",
      "Positioners and tracks, the axes that drive them, and the unit under the robot."},
     {"tools", "By name: frame, load, and whether the robot holds it."},
     {"work_objects",
      "By name: user and object frame, the unit that carries it, and whether the robot holds it."},
     {"loads", "By name: mass and centre of gravity."},
     {"joints, poses", "Targets by name, for @NAME on the command line."},
     {"use, expect", "The tool, work object and load without options; poses known from elsewhere."}}};

// Text of a page: a hyphen that people copy, and no character that means something to the formatter.
std::string Escaped(std::string_view text)
{
    std::string out;
    for (const char c : text) {
        switch (c) {
            case '-': out += "\\-"; break;
            case '\\': out += "\\e"; break;
            case '`': out += "\\(ga"; break;
            case '\'': out += "\\(aq"; break;
            case '^': out += "\\(ha"; break;
            case '~': out += "\\(ti"; break;
            case '"': out += "\\(dq"; break;
            default: out += c;
        }
    }
    return out;
}

// A line as it stands; a dot at its start would be a macro.
void AddLine(std::string& out, std::string_view text)
{
    if (text.starts_with('.')) out += "\\&";
    out += Escaped(text) + "\n";
}

// Text that is filled, in lines of the source that an editor shows whole.
void AddText(std::string& out, std::string_view text)
{
    constexpr std::size_t kWidth = 70;
    while (text.size() > kWidth) {
        std::size_t end = text.rfind(' ', kWidth);
        if (end == std::string_view::npos) end = text.find(' ');
        if (end == std::string_view::npos) break;
        AddLine(out, text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    AddLine(out, text);
}

void AddEntry(std::string& out, const std::string& tag, std::string_view text)
{
    out += ".TP\n" + tag + "\n";
    AddText(out, text);
}

std::string TagOf(const ArgumentInfo& argument)
{
    std::string tag;
    for (const std::string& name : argument.names)
        tag += (tag.empty() ? "" : ", ") + ("\\fB" + Escaped(name) + "\\fR");
    if (argument.value.empty() || argument.value == argument.names.front()) return tag;
    return tag + " \\fI" + Escaped(argument.value) + "\\fR";
}

std::string TextOf(const ArgumentInfo& argument)
{
    std::string text = argument.help + ".";
    if (argument.isRequired && !argument.IsFlag()) text += " Required.";
    if (!argument.otherwise.empty()) text += " Otherwise " + argument.otherwise + ".";
    return text;
}

// Paragraphs, and indented lines as they stand.
void AddFooter(std::string& out, std::string_view footer)
{
    bool isExample = false;
    bool isParagraph = false;
    while (!footer.empty()) {
        const std::size_t end = std::min(footer.find('\n'), footer.size());
        const std::string_view line = footer.substr(0, end);
        footer.remove_prefix(std::min(end + 1, footer.size()));
        const bool isIndented = line.starts_with("  ");
        if (isIndented != isExample) out += isIndented ? ".PP\n.RS 4\n.nf\n" : ".fi\n.RE\n";
        isExample = isIndented;
        if (line.empty() || isIndented) isParagraph = false;
        if (line.empty()) continue;
        if (!isIndented && !isParagraph) {
            out += ".PP\n";
            isParagraph = true;
        }
        if (isIndented) {
            AddLine(out, line.substr(2));
        } else {
            AddText(out, line);
        }
    }
    if (isExample) out += ".fi\n.RE\n";
}

void AddCommand(std::string& out, const CommandInfo& command)
{
    out += ".SS " + Escaped(command.path) + "\n";
    out += "\\fB" + Escaped(command.path) + "\\fR " + Escaped(UsageOf(command)) + "\n.PP\n";
    AddText(out, command.about + ".");
    for (const ArgumentInfo& positional : command.positionals)
        AddEntry(out, TagOf(positional), TextOf(positional));
    for (const ArgumentInfo& option : command.options) AddEntry(out, TagOf(option), TextOf(option));
    AddFooter(out, command.footer);
}

}  // namespace

std::string ManPage(const CommandInfo& program, const std::string& version, const std::string& date)
{
    std::string out = ".TH KINE 1 " + date + " \"" + version + "\" \"User Commands\"\n";
    out += ".SH NAME\n" + program.name + " \\- the kinematics of a robot cell at the prompt\n";
    out += ".SH SYNOPSIS\n\\fBkine\\fR \\fICOMMAND\\fR [\\fIOPTIONS\\fR] \\fIARGUMENTS\\fR\n";
    out += ".SH DESCRIPTION\n.B kine\n";
    AddText(out, kDescription);
    out += ".PP\n";
    AddText(out, kStreams);
    for (const ArgumentInfo& option : program.options) AddEntry(out, TagOf(option), TextOf(option));
    out += ".SH COMMANDS\n";
    for (const CommandInfo& top : program.commands)
        ForEachCommand(top, [&](const CommandInfo& command) { AddCommand(out, command); });
    out += ".SH EXIT STATUS\n";
    for (const auto& [code, text] : kExitStatus) AddEntry(out, "\\fB" + std::string(code) + "\\fR", text);
    out += ".SH FILES\nA cell file is a JSON object.\nUnits stand in the names of its keys, such as d1_mm.\n";
    for (const auto& [keys, text] : kCellKeys) AddEntry(out, "\\fB" + Escaped(keys) + "\\fR", text);
    out += ".SH SEE ALSO\nThe documentation of KineDll, and of cell files in docs/kine_cells.md.\n";
    return out;
}

}  // namespace kine_cli
