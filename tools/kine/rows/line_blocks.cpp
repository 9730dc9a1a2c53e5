#include "rows/line_blocks.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <utility>

#include "failure.h"

namespace kine_cli {
namespace {

constexpr std::size_t kBlockSize = std::size_t{1} << 16U;
constexpr std::size_t kLongestLine = 1'000'000;

// The mark that some programs put in front of UTF-8.
void RemoveMark(std::string& text)
{
    if (text.starts_with("\xEF\xBB\xBF")) text.erase(0, 3);
}

}  // namespace

LineBlocks::LineBlocks(const std::string& file)
{
    if (file == "-") {
        source_ = "standard input";
        descriptor_ = STDIN_FILENO;
    } else {
        source_ = file;
        descriptor_ = open(file.c_str(), O_RDONLY | O_CLOEXEC);
        if (descriptor_ < 0) FailFile(file + ": " + std::strerror(errno));
        owns_ = true;
    }
    struct stat about = {};
    if (fstat(descriptor_, &about) == 0 && S_ISREG(about.st_mode))
        size_ = static_cast<std::uint64_t>(about.st_size);
}

LineBlocks::~LineBlocks()
{
    if (owns_) close(descriptor_);
}

bool LineBlocks::Next(LineBlock& block)
{
    block.firstLine = nextLine_;
    block.text = std::move(rest_);
    rest_.clear();
    for (;;) {
        const std::size_t had = block.text.size();
        block.text.resize(had + kBlockSize);
        ssize_t count = 0;
        do {
            count = read(descriptor_, block.text.data() + had, kBlockSize);
        } while (count < 0 && errno == EINTR);
        if (count < 0) FailFile(source_ + ": " + std::strerror(errno));
        block.text.resize(had + static_cast<std::size_t>(count));
        if (count == 0) {
            nextLine_ += 1;
            if (block.firstLine == 1) RemoveMark(block.text);
            return !block.text.empty();
        }
        // What was there before has no end of a line.
        const std::size_t firstEnd = block.text.find('\n', had);
        if (std::min(firstEnd, block.text.size()) > kLongestLine) {
            FailFile(source_ + ":" + std::to_string(nextLine_) + ": a line of more than a million bytes");
        }
        if (firstEnd == std::string::npos) continue;
        const std::size_t end = block.text.rfind('\n') + 1;
        rest_.assign(block.text, end);
        block.text.resize(end);
        nextLine_ += static_cast<std::uint64_t>(std::count(block.text.begin(), block.text.end(), '\n'));
        if (block.firstLine == 1) RemoveMark(block.text);
        return true;
    }
}

}  // namespace kine_cli
