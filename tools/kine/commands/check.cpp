// kine check: is a cell described correctly.
#include <CLI/CLI.hpp>
#include <cstddef>
#include <cstdio>

#include "check/report.h"
#include "commands/commands.h"

namespace kine_cli {
namespace {

constexpr std::size_t kUsualSamples = 4000;

struct CheckOptions
{
    std::vector<std::string> files;
    std::size_t samples = kUsualSamples;
    FormatOptions format;
};

ExitCode Worse(ExitCode a, ExitCode b) { return static_cast<int>(a) > static_cast<int>(b) ? a : b; }

ExitCode StatusOf(const CheckReport& report)
{
    if (!report.unreadable.empty()) return ExitCode::kBadFile;
    return report.findings.Count(Severity::kError) > 0 ? ExitCode::kRefused : ExitCode::kDone;
}

ExitCode RunCheck(const CheckOptions& options, PrintedLines& printed)
{
    ExitCode status = ExitCode::kDone;
    nlohmann::ordered_json cells = nlohmann::ordered_json::array();
    bool isFirst = true;
    for (const std::string& file : options.files) {
        const CheckReport report = CheckCell(file, options.samples, printed);
        status = Worse(status, StatusOf(report));
        if (!report.unreadable.empty()) std::fprintf(stderr, "%s\n", report.unreadable.c_str());
        if (options.format.json) {
            cells.push_back(ReportJson(report));
            continue;
        }
        const std::string text = ReportText(report);
        if (!text.empty()) WriteAll(printed.DataDescriptor(), (isFirst ? "" : "\n") + text);
        isFirst = isFirst && text.empty();
    }
    if (options.format.json) {
        // A name in the file need not be UTF-8.
        constexpr auto kReplace = nlohmann::ordered_json::error_handler_t::replace;
        WriteAll(printed.DataDescriptor(),
                 nlohmann::ordered_json{{"cells", cells}}.dump(2, ' ', true, kReplace) + "\n");
    }
    return status;
}

}  // namespace

void AddCheck(CLI::App& program, Action& action)
{
    const auto options = std::make_shared<CheckOptions>();
    CLI::App& command = *program.add_subcommand("check", "Finds what is wrong with a cell");
    command.add_option("CELL", options->files, "Cell files (JSON)")->required();
    command.add_option("-n,--samples", options->samples, "Joint sets of each round trip")
        ->capture_default_str()
        ->type_name("N")
        ->check(CLI::Range(std::size_t{1}, std::size_t{10'000'000}));
    options->format.AddTo(command, false);
    command.footer(
        "Checks the fields of the cell, its targets and expectations, then sends joints through forward and\n"
        "inverse kinematics and looks at what comes back. Exit status: 0 good, also with warnings; 1 wrong;\n"
        "3 a file that cannot be read.\n"
        "Examples:\n"
        "  kine check puma.json\n"
        "  kine check --samples 100000 cells/*.json\n"
        "  kine check cell.json --json");
    SetAction(command, action, options, RunCheck);
}

}  // namespace kine_cli
