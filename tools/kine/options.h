// Options that commands share, and what a command is.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "cell/cell.h"
#include "failure.h"
#include "library/printed_lines.h"
#include "library/session.h"
#include "rows/stream.h"

// Its header takes longer to read than most files here.
namespace CLI {
class App;
}

namespace kine_cli {

// What a command does once the command line is read: the library's lines are captured by then.
using Action = std::function<ExitCode(PrintedLines&)>;

// Adds one command with its options to the program. When it is asked for, `action` is set to what it does.
using AddCommand = void (*)(CLI::App& program, Action& action);

// --json, --csv (or the table)
struct FormatOptions
{
    bool json = false;
    bool csv = false;

    void AddTo(CLI::App& command, bool withCsv = true);
    Format Chosen() const { return json ? Format::kJson : csv ? Format::kCsv : Format::kTable; }
};

// CELL, --tool, --wobj, --load
struct CellOptions
{
    std::string file;
    Selection selection;

    void AddTo(CLI::App& command);
};

// TARGET..., --input, --jobs, --quiet
struct TargetOptions
{
    TargetSource source;
    int jobs = 1;
    bool quiet = false;

    void AddTo(CLI::App& command, const std::string& what, const std::string& help, bool withJobs = true);
    StreamOptions Stream(const FormatOptions& format) const { return {format.Chosen(), quiet, jobs}; }
};

// --in base|flange|world|wobj|vision
void AddReferenceOption(CLI::App& command, std::string& word);
Reference ReferenceNamed(const std::string& word);

// How many values the targets of a cell have.
Widths WidthsOf(const Cell& cell);

// The cell, sent to the library.
struct ReadyCell
{
    Cell cell;
    CellRecords records;
    Widths widths;

    ReadyCell(const CellOptions& options, PrintedLines& printed);
    // A cell that has been sent already.
    ReadyCell(Cell sent, const Selection& selection);
};

// Calls back when the command line asks for the command.
void WhenAskedFor(CLI::App& command, const std::function<void()>& call);

// Sets the action of a command to run(options, printed), with options that live as long as it does.
template <typename Options, typename Run>
void SetAction(CLI::App& command, Action& action, const std::shared_ptr<Options>& options, Run run)
{
    WhenAskedFor(command, [&action, options, run] {
        action = [options, run](PrintedLines& printed) { return run(*options, printed); };
    });
}

}  // namespace kine_cli
