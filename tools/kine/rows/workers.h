// Blocks of lines dealt out to child processes, whose answers come back in the order of the blocks.
// Processes, since a library has one configuration and one standard output: each child has its own copy of
// both.
#pragma once

#include <functional>

#include "rows/block_run.h"
#include "rows/line_blocks.h"

namespace kine_cli {

// Reads all of `blocks`. `run` works in a child after `prepare` was called there; `take` gets the answers
// here, in order, with the size of the block in bytes, and says whether to go on. Fails when a child ends
// early.
void RunInProcesses(int jobs, LineBlocks& blocks, LineBlock first, const std::function<void()>& prepare,
                    const std::function<BlockAnswer(const LineBlock&)>& run,
                    const std::function<bool(const BlockAnswer&, std::size_t)>& take);

}  // namespace kine_cli
