#include "rows/stream.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "rows/block_run.h"
#include "rows/line_blocks.h"
#include "rows/progress.h"
#include "rows/row_parser.h"
#include "rows/workers.h"

namespace kine_cli {
namespace {

// The targets of the command line.
std::vector<StoredTarget> ParseArguments(Shape shape, Widths widths, const Cell* cell,
                                         const std::vector<std::string>& arguments)
{
    std::vector<StoredTarget> targets;
    for (const std::string& argument : arguments) {
        StoredTarget& stored = targets.emplace_back();
        stored.name = argument;
        if (argument.starts_with('@')) {
            const std::string name = argument.substr(1);
            stored.name = name;
            if (!cell) FailUsage("\"" + argument + "\" names a target of a cell; give one with --cell");
            const KineJoint* joints = shape != Shape::kPoses ? Find(cell->joints, name) : nullptr;
            const PoseTarget* pose = shape != Shape::kJoints ? Find(cell->poses, name) : nullptr;
            if (!joints && !pose) {
                FailUsage(cell->file + " has no " + (shape == Shape::kPoses ? "pose" : "joints") + " \"" +
                          name + "\"");
            }
            if (joints) stored.target.joints = *joints;
            if (pose) {
                stored.target.pose = pose->pose;
                stored.target.hasConfig = pose->hasConfig;
            }
            continue;
        }
        try {
            RowParser(shape, widths, "\"" + argument + "\"").Parse(argument, 0, stored.target);
        } catch (const Failure& failure) {
            FailUsage(failure.what());
        }
        stored.name = std::to_string(targets.size());
    }
    for (StoredTarget& stored : targets) stored.target.name = stored.name;
    return targets;
}

// Reads on until the header is taken, or the first row shows that there is none. The block is left with the
// rows behind the header; false when there are none.
bool ReadHead(LineBlocks& blocks, RowParser& parser, LineBlock& block)
{
    while (blocks.Next(block)) {
        std::size_t taken = 0;
        std::uint64_t lines = 0;
        bool isFound = false;
        ForEachLine(block, [&](std::string_view line, std::uint64_t number) {
            if (isFound) return;
            isFound = !RowParser::IsEmpty(line);
            if (isFound && !parser.TakeHeader(line, number)) return;
            taken += std::min(line.size() + 1, block.text.size() - taken);
            ++lines;
        });
        block.text.erase(0, taken);
        block.firstLine += lines;
        if (isFound) return true;
    }
    return false;
}

// Where the rows come from: the file, or a standard input that is no terminal.
std::string SourceFile(const TargetSource& source)
{
    if (!source.file.empty()) return source.file;
    if (isatty(STDIN_FILENO) == 1)
        FailUsage("no targets: give them as arguments, with --input FILE, or through a pipe");
    return "-";
}

class Sink
{
public:
    Sink(const StreamOptions& options, PrintedLines& printed, std::uint64_t size)
        : options_(options), descriptor_(printed.DataDescriptor()), progress_(!options.quiet, size)
    {}

    // Whether to go on.
    bool Take(const BlockAnswer& answer, std::size_t blockSize)
    {
        WriteAll(descriptor_, answer.data);
        if (!answer.diagnostics.empty() && !options_.quiet) {
            progress_.Clear();
            std::fwrite(answer.diagnostics.data(), 1, answer.diagnostics.size(), stderr);
        }
        refused_ += answer.refused;
        progress_.Add(answer.rows, blockSize);
        failure_ = answer.failure;
        failureText_ = answer.failureText;
        return failure_ == ExitCode::kDone;
    }
    ExitCode Result() const
    {
        if (failure_ != ExitCode::kDone) throw Failure(failure_, failureText_);
        return refused_ > 0 ? ExitCode::kRefused : ExitCode::kDone;
    }

private:
    const StreamOptions& options_;
    int descriptor_;
    Progress progress_;
    std::uint64_t refused_ = 0;
    ExitCode failure_ = ExitCode::kDone;
    std::string failureText_;
};

ExitCode RunArguments(RowFilter& filter, RowWriter& writer, const std::vector<StoredTarget>& targets,
                      const StreamOptions& options, PrintedLines& printed)
{
    Answers answers(writer, printed);
    for (const StoredTarget& stored : targets) filter.Answer(stored.target, answers);
    WriteAll(printed.DataDescriptor(), writer.Header() + writer.Written());
    if (!options.quiet) std::fputs(answers.diagnostics.c_str(), stderr);
    return answers.refused > 0 ? ExitCode::kRefused : ExitCode::kDone;
}

}  // namespace

void WriteAll(int descriptor, std::string_view text)
{
    while (!text.empty()) {
        const ssize_t count = write(descriptor, text.data(), text.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) FailFile(std::string("standard output: ") + std::strerror(errno));
        text.remove_prefix(static_cast<std::size_t>(count));
    }
}

ExitCode RunFilter(RowFilter& filter, Shape shape, Widths widths, const Cell* cell,
                   const TargetSource& source, const StreamOptions& options, PrintedLines& printed)
{
    RowWriter writer(options.format, widths, filter.Columns());
    if (!source.arguments.empty()) {
        if (!source.file.empty()) FailUsage("give targets either as arguments or with --input, not both");
        return RunArguments(filter, writer, ParseArguments(shape, widths, cell, source.arguments), options,
                            printed);
    }
    LineBlocks blocks(SourceFile(source));
    RowParser parser(shape, widths, blocks.Source());
    LineBlock block;
    const bool hasRows = ReadHead(blocks, parser, block);
    WriteAll(printed.DataDescriptor(), writer.Header());
    if (!hasRows) return ExitCode::kDone;

    Sink sink(options, printed, blocks.Size());
    BlockRun run(filter, parser, writer, printed);
    if (options.jobs > 1) {
        RunInProcesses(
            options.jobs, blocks, std::move(block), [&] { printed.Renew(); },
            [&](const LineBlock& lines) { return run.Run(lines); },
            [&](const BlockAnswer& answer, std::size_t size) { return sink.Take(answer, size); });
    } else {
        do {
            if (!sink.Take(run.Run(block), block.text.size())) break;
        } while (blocks.Next(block));
    }
    return sink.Result();
}

std::vector<StoredTarget> ReadTargets(Shape& shape, Widths widths, const Cell* cell,
                                      const TargetSource& source)
{
    if (!source.arguments.empty()) {
        if (!source.file.empty()) FailUsage("give targets either as arguments or with --input, not both");
        return ParseArguments(shape, widths, cell, source.arguments);
    }
    LineBlocks blocks(SourceFile(source));
    RowParser parser(shape, widths, blocks.Source());
    std::vector<StoredTarget> targets;
    LineBlock block;
    if (ReadHead(blocks, parser, block)) {
        do {
            ForEachLine(block, [&](std::string_view line, std::uint64_t number) {
                if (RowParser::IsEmpty(line)) return;
                StoredTarget& stored = targets.emplace_back();
                parser.Parse(line, number, stored.target);
                stored.name = stored.target.name;
            });
        } while (blocks.Next(block));
    }
    shape = parser.RowShape();
    for (StoredTarget& stored : targets) stored.target.name = stored.name;
    return targets;
}

}  // namespace kine_cli
