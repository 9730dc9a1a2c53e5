// A file or pipe in blocks of whole lines.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kine_cli {

struct LineBlock
{
    std::string text;
    std::uint64_t firstLine = 1;
};

class LineBlocks
{
public:
    // "-" is the standard input. Fails (bad file) when the file cannot be opened.
    explicit LineBlocks(const std::string& file);
    ~LineBlocks();
    LineBlocks(const LineBlocks&) = delete;
    LineBlocks& operator=(const LineBlocks&) = delete;

    // The next whole lines as they come, so that rows typed or piped in slowly are answered at once; false at
    // the end. Fails when reading does, or when a line is longer than a million bytes.
    bool Next(LineBlock& block);

    const std::string& Source() const { return source_; }
    int Descriptor() const { return descriptor_; }
    // Of a regular file, in bytes; 0 when not known.
    std::uint64_t Size() const { return size_; }

private:
    std::string source_;
    int descriptor_ = -1;
    bool owns_ = false;
    std::uint64_t size_ = 0;
    std::uint64_t nextLine_ = 1;
    std::string rest_;  // of a line whose end has not come
};

// Calls row(line, number) for each line of a block.
template <typename Row>
void ForEachLine(const LineBlock& block, const Row& row)
{
    std::string_view text = block.text;
    for (std::uint64_t number = block.firstLine; !text.empty(); ++number) {
        const std::size_t end = text.find('\n');
        row(text.substr(0, end), number);
        if (end == std::string_view::npos) return;
        text.remove_prefix(end + 1);
    }
}

}  // namespace kine_cli
