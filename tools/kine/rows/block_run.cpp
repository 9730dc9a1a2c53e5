#include "rows/block_run.h"

#include <utility>

namespace kine_cli {

BlockRun::BlockRun(RowFilter& filter, RowParser parser, RowWriter& writer, PrintedLines& printed)
    : filter_(filter), parser_(std::move(parser)), answers_(writer, printed)
{}

BlockAnswer BlockRun::Run(const LineBlock& block)
{
    BlockAnswer answer;
    answers_.refused = 0;
    answers_.row.Written().reserve(3 * block.text.size());  // about what comes out
    try {
        ForEachLine(block, [&](std::string_view line, std::uint64_t number) {
            if (RowParser::IsEmpty(line)) return;
            parser_.Parse(line, number, target_);
            ++answer.rows;
            if (answers_.Accept(target_, target_.refusedBefore)) filter_.Answer(target_, answers_);
        });
    } catch (const Failure& failure) {
        answer.failure = failure.code;
        answer.failureText = failure.what();
    }
    answer.refused = answers_.refused;
    answer.data = std::exchange(answers_.row.Written(), {});
    answer.diagnostics = std::exchange(answers_.diagnostics, {});
    return answer;
}

}  // namespace kine_cli
