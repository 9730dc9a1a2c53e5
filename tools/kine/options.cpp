#include "options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <utility>

#include "cell/cell_reader.h"

namespace kine_cli {

void FormatOptions::AddTo(CLI::App& command, bool withCsv)
{
    CLI::Option* jsonFlag = command.add_flag("--json", json, "JSON; rows are one object per line");
    if (withCsv) command.add_flag("--csv", csv, "Comma-separated values with a header")->excludes(jsonFlag);
}

void CellOptions::AddTo(CLI::App& command)
{
    command.add_option("CELL", file, "Cell file (JSON)")->required();
    command.add_option("--tool", selection.tool, "Tool of the cell, or none")->type_name("NAME");
    command.add_option("--wobj", selection.workObject, "Work object of the cell, or none")->type_name("NAME");
    command.add_option("--load", selection.load, "Load of the cell, or none")->type_name("NAME");
}

void TargetOptions::AddTo(CLI::App& command, const std::string& what, const std::string& help, bool withJobs)
{
    command.add_option(what, source.arguments, help + ": numbers parted by commas, or @NAME of the cell");
    command.add_option("-i,--input", source.file, "Read targets from a CSV file; - is the standard input")
        ->type_name("FILE");
    command.add_flag("-q,--quiet", quiet, "No messages about refused targets, no progress");
    if (withJobs) {
        command.add_option("-j,--jobs", jobs, "Share the rows out to this many processes")
            ->type_name("N")
            ->check(CLI::Range(1, 256));
    }
}

void AddReferenceOption(CLI::App& command, std::string& word)
{
    command.add_option("--in", word, "Frame of the poses: base, flange, world, wobj or vision")
        ->capture_default_str()
        ->type_name("FRAME")
        ->check(CLI::IsMember({"base", "flange", "world", "wobj", "vision"}));
}

Reference ReferenceNamed(const std::string& word)
{
    if (word == "base") return Reference::kBase;
    if (word == "flange") return Reference::kFlange;
    if (word == "world") return Reference::kWorld;
    return word == "vision" ? Reference::kVision : Reference::kWorkObject;
}

Widths WidthsOf(const Cell& cell)
{
    return {cell.AxisCount(), std::min(cell.externalAxes.size(), kExternalAxes)};
}

void WhenAskedFor(CLI::App& command, const std::function<void()>& call) { command.callback(call); }

ReadyCell::ReadyCell(const CellOptions& options, PrintedLines& printed) : cell(ReadCell(options.file))
{
    RequireSetUp(cell, printed);
    records = RecordsOf(cell, options.selection);
    widths = WidthsOf(cell);
}

ReadyCell::ReadyCell(Cell sent, const Selection& selection)
    : cell(std::move(sent)),
      records(RecordsOf(cell, selection)),
      widths{cell.AxisCount(), std::min(cell.externalAxes.size(), kExternalAxes)}
{}

}  // namespace kine_cli
