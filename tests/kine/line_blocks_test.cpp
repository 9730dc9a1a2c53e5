// Files and pipes in blocks of whole lines.
#include "rows/line_blocks.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "failure_text.h"

namespace kine_cli {
namespace {

// A file with this text, gone at the end.
class TextFile
{
public:
    explicit TextFile(const std::string& text)
    {
        std::ofstream file(name_, std::ios::binary);
        file << text;
        EXPECT_TRUE(file.flush());
    }
    ~TextFile() { unlink(name_.c_str()); }
    TextFile(const TextFile&) = delete;
    TextFile& operator=(const TextFile&) = delete;

    const std::string& Name() const { return name_; }

private:
    // Tests may run side by side, each in a process of its own; one test has one file at a time.
    std::string name_ = testing::TempDir() + "kine_lines_" + std::to_string(getpid());
};

using NumberedLines = std::vector<std::pair<std::uint64_t, std::string>>;

NumberedLines LinesOf(const std::string& text)
{
    const TextFile file(text);
    LineBlocks blocks(file.Name());
    EXPECT_EQ(blocks.Size(), text.size());
    NumberedLines lines;
    for (LineBlock block; blocks.Next(block);) {
        ForEachLine(block,
                    [&](std::string_view line, std::uint64_t number) { lines.emplace_back(number, line); });
    }
    return lines;
}

std::string FailureOf(const std::string& text)
{
    return FailureText([&] { LinesOf(text); });
}

TEST(LineBlocks, lines_keep_their_numbers)
{
    EXPECT_EQ(LinesOf("a\n\nb\n"), (NumberedLines{{1, "a"}, {2, ""}, {3, "b"}}));
    EXPECT_EQ(LinesOf("a\nb"), (NumberedLines{{1, "a"}, {2, "b"}}));
    EXPECT_EQ(LinesOf("\n"), (NumberedLines{{1, ""}}));
    EXPECT_EQ(LinesOf(""), NumberedLines{});
}

TEST(LineBlocks, a_byte_order_mark_is_left_out_at_the_start_only)
{
    EXPECT_EQ(LinesOf("\xEF\xBB\xBFq\n\xEF\xBB\xBFr"), (NumberedLines{{1, "q"}, {2, "\xEF\xBB\xBFr"}}));
    EXPECT_EQ(LinesOf("\xEF\xBB\xBFq"), (NumberedLines{{1, "q"}}));
    EXPECT_EQ(LinesOf("\xEF\xBB\xBF"), NumberedLines{});
}

TEST(LineBlocks, lines_across_blocks_stay_whole)
{
    // Lengths around the size of a block, so that ends fall before, on and behind it.
    std::string text;
    NumberedLines expected;
    for (const std::size_t size : {65534U, 65535U, 65536U, 65537U, 1U, 131071U, 0U, 65535U, 3U}) {
        expected.emplace_back(expected.size() + 1,
                              std::string(size, static_cast<char>('a' + expected.size())));
        text += expected.back().second + '\n';
    }
    EXPECT_EQ(LinesOf(text), expected);
}

TEST(LineBlocks, many_short_lines_are_numbered_through)
{
    std::string text;
    for (int i = 1; i <= 100000; ++i) text += std::to_string(i) + '\n';
    const NumberedLines lines = LinesOf(text);
    ASSERT_EQ(lines.size(), 100000U);
    for (const auto& [number, line] : lines) ASSERT_EQ(std::to_string(number), line);
}

TEST(LineBlocks, a_million_bytes_are_a_line_and_one_more_are_none)
{
    const std::string longest(1'000'000, 'x');
    EXPECT_EQ(LinesOf(longest + "\ny").size(), 2U);
    EXPECT_EQ(LinesOf(longest), (NumberedLines{{1, longest}}));
    const std::string name = FailureOf(longest + "x\n");
    EXPECT_TRUE(name.ends_with(":1: a line of more than a million bytes")) << name;
    EXPECT_TRUE(FailureOf(longest + "x").ends_with(":1: a line of more than a million bytes"));
    EXPECT_TRUE(
        FailureOf("a\nb\n" + longest + "x\nc\n").ends_with(":3: a line of more than a million bytes"));
}

TEST(LineBlocks, what_cannot_be_read_is_named)
{
    EXPECT_EQ(FailureText([] { LineBlocks("/nowhere/f.csv"); }), "/nowhere/f.csv: No such file or directory");
    EXPECT_EQ(FailureText([] {
                  LineBlock block;
                  LineBlocks("/").Next(block);
              }),
              "/: Is a directory");
}

TEST(LineBlocks, a_pipe_gives_each_line_as_it_comes)
{
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    LineBlocks blocks("/dev/fd/" + std::to_string(ends[0]));
    EXPECT_EQ(blocks.Size(), 0U);
    LineBlock block;
    const auto send = [&](const char* text) {
        EXPECT_GT(write(ends[1], text, std::string_view(text).size()), 0);
    };
    send("one\ntw");
    ASSERT_TRUE(blocks.Next(block));  // would wait for ever if it waited for more
    EXPECT_EQ(block.text, "one\n");
    EXPECT_EQ(block.firstLine, 1U);
    send("o\n");
    ASSERT_TRUE(blocks.Next(block));
    EXPECT_EQ(block.text, "two\n");
    EXPECT_EQ(block.firstLine, 2U);
    send("three");
    close(ends[1]);
    ASSERT_TRUE(blocks.Next(block));
    EXPECT_EQ(block.text, "three");
    EXPECT_EQ(block.firstLine, 3U);
    EXPECT_FALSE(blocks.Next(block));
    close(ends[0]);
}

}  // namespace
}  // namespace kine_cli
