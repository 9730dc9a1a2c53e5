// A filter over the rows of one block of lines.
#pragma once

#include <cstdint>
#include <string>

#include "failure.h"
#include "rows/line_blocks.h"
#include "rows/row_filter.h"
#include "rows/row_parser.h"

namespace kine_cli {

struct BlockAnswer
{
    std::string data;
    std::string diagnostics;
    std::uint64_t rows = 0;
    std::uint64_t refused = 0;
    // Set when a row could not be read; the answers of the rows before it are there.
    ExitCode failure = ExitCode::kDone;
    std::string failureText;
};

class BlockRun
{
public:
    BlockRun(RowFilter& filter, RowParser parser, RowWriter& writer, PrintedLines& printed);

    BlockAnswer Run(const LineBlock& block);

private:
    RowFilter& filter_;
    RowParser parser_;
    Answers answers_;
    Target target_;
};

}  // namespace kine_cli
