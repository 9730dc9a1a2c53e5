// Runs a filter over its targets: those of the command line, or the rows of a file or of the standard input,
// in this process or dealt out to several.
#pragma once

#include <string>
#include <vector>

#include "cell/cell.h"
#include "failure.h"
#include "library/printed_lines.h"
#include "rows/row_filter.h"
#include "rows/target.h"

namespace kine_cli {

struct StreamOptions
{
    Format format = Format::kTable;
    bool quiet = false;  // no diagnostics, no progress
    int jobs = 1;
};

struct TargetSource
{
    std::vector<std::string> arguments;  // numbers parted by commas, or @ and a name of the cell
    std::string file;                    // empty: the standard input, when there are no arguments
};

// `cell` names targets; null for none. kRefused when the library refused a target.
ExitCode RunFilter(RowFilter& filter, Shape shape, Widths widths, const Cell* cell,
                   const TargetSource& source, const StreamOptions& options, PrintedLines& printed);

// Every target of a source at once, for commands that need them together.
struct StoredTarget
{
    std::string name;
    Target target;
};
std::vector<StoredTarget> ReadTargets(Shape& shape, Widths widths, const Cell* cell,
                                      const TargetSource& source);

// Writes everything or fails.
void WriteAll(int descriptor, std::string_view text);

}  // namespace kine_cli
