// The print routine: what it is given and nothing else, and at once.
#include "config/print.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <limits>
#include <string>

#include "support/stdout_capture.h"

#if defined(__unix__)
#include <unistd.h>
#endif

using namespace kine;
using kine::test::PrintedBy;

TEST(Print, writes_the_text_without_prefix_or_addition)
{
    EXPECT_EQ(PrintedBy([] { Print("FK Error 1:%d\n", {24577}); }), "FK Error 1:24577\n");
    EXPECT_EQ(PrintedBy([] { Print("no end of line"); }), "no end of line");
    EXPECT_EQ(PrintedBy([] { Print(""); }), "");
}

TEST(Print, writes_signed_decimals)
{
    EXPECT_EQ(PrintedBy([] { Print("%d,%d\n", {-1, 0}); }), "-1,0\n");
    EXPECT_EQ(PrintedBy([] {
                  Print("%d %d\n", {std::numeric_limits<int>::min(), std::numeric_limits<int>::max()});
              }),
              "-2147483648 2147483647\n");
}

TEST(Print, bytes_beyond_ascii_pass_unchanged)
{
    EXPECT_EQ(PrintedBy([] { Print("Unit\xA3\xBA%d\n", {3}); }), "Unit\xA3\xBA" + std::string("3\n"));
}

TEST(Print, lines_come_in_order)
{
    EXPECT_EQ(PrintedBy([] {
                  for (int i = 0; i < 3; ++i) Print("%d\n", {i});
              }),
              "0\n1\n2\n");
}

TEST(Print, places_and_numbers_that_are_left_over_are_left_as_they_are)
{
    EXPECT_EQ(PrintedBy([] { Print("%d%d|%d\n", {5, -6}); }), "5-6|%d\n");
    EXPECT_EQ(PrintedBy([] { Print("%d\n", {1, 2}); }), "1\n");
    EXPECT_EQ(PrintedBy([] { Print("100 %, %s, %%\n", {1}); }), "100 %, %s, %%\n");
}

TEST(Print, text_beyond_256_bytes_is_cut)
{
    const std::string text(300, 'x');
    for (const std::size_t length : {255u, 256u, 257u, 300u}) {
        EXPECT_EQ(PrintedBy([&] { Print(text.substr(0, length)); }),
                  text.substr(0, std::min<std::size_t>(length, 256)));
    }
    // The number is where the room ends.
    EXPECT_EQ(PrintedBy([&] { Print(text.substr(0, 250) + "%d\n", {-123456789}); }),
              text.substr(0, 250) + "-12345");
    EXPECT_EQ(PrintedBy([&] { Print(text + "%d\n", {7}); }), text.substr(0, 256));
}

#if defined(__unix__)
// Standard output goes to a pipe, where the C library would hold a line back without the flush.
TEST(Print, line_is_out_before_the_call_returns)
{
    std::fflush(stdout);
    int ends[2] = {-1, -1};
    ASSERT_EQ(pipe(ends), 0);
    const int saved = dup(STDOUT_FILENO);
    ASSERT_GE(saved, 0);
    ASSERT_GE(dup2(ends[1], STDOUT_FILENO), 0);
    Print("line %d\n", {7});
    // Only the pipe is left to read: what is still in the buffer goes to the restored output.
    const int restored = dup2(saved, STDOUT_FILENO);
    close(saved);
    close(ends[1]);
    char text[64] = {};
    const auto length = read(ends[0], text, sizeof text - 1);
    close(ends[0]);
    ASSERT_GE(restored, 0);
    EXPECT_EQ(length, 7);
    EXPECT_STREQ(text, "line 7\n");
}
#endif
