// Text from outside in messages, tables and JSON.
#include "text/quoted.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace kine_cli {
namespace {

std::string Json(std::string_view text)
{
    std::string out;
    AppendJsonText(out, text);
    return out;
}

std::string Plain(std::string_view text)
{
    std::string out;
    AppendPlain(out, text);
    return out;
}

TEST(AppendJsonText, another_parser_reads_the_text_back)
{
    const std::string every =
        "\"\\/\b\f\n\r\t a\x1b[31m\x7f\xC2\x9B\xC3\xA9\xE2\x82\xAC\xF0\x9F\xA6\xBE" + std::string(1, '\0');
    EXPECT_EQ(nlohmann::json::parse(Json(every)).get<std::string>(), every);
}

TEST(AppendJsonText, control_characters_are_escaped)
{
    EXPECT_EQ(Json("\x1b\n\x7f\xC2\x9B\xC2\xA0"), "\"\\u001b\\n\\u007f\\u009b\xC2\xA0\"");
}

TEST(AppendJsonText, each_byte_that_is_not_UTF8_is_a_question_mark)
{
    EXPECT_EQ(Json("a\x80z"), "\"a?z\"");                  // a byte from the middle
    EXPECT_EQ(Json("\xC3"), "\"?\"");                      // cut short
    EXPECT_EQ(Json("\xE2\x82z"), "\"??z\"");               // cut short
    EXPECT_EQ(Json("\xC0\xAF\xC1\xBF"), "\"????\"");       // longer than it need be
    EXPECT_EQ(Json("\xE0\x9F\xBF"), "\"???\"");            // the same
    EXPECT_EQ(Json("\xF0\x8F\xBF\xBF"), "\"????\"");       // the same
    EXPECT_EQ(Json("\xED\xA0\x80"), "\"???\"");            // half of a pair
    EXPECT_EQ(Json("\xF4\x90\x80\x80"), "\"????\"");       // above U+10FFFF
    EXPECT_EQ(Json("\xF5\x80\x80\x80\xFF"), "\"?????\"");  // never a first byte
    EXPECT_EQ(Json("\xF4\x8F\xBF\xBF\xED\x9F\xBF"),
              "\"\xF4\x8F\xBF\xBF\xED\x9F\xBF\"");  // the last of their kind
}

TEST(AppendPlain, what_moves_a_cursor_is_a_question_mark)
{
    EXPECT_EQ(Plain("a\x1b[2J\r\n\tb\x7f\xC2\x85\xC3\xA9\xFF\"\\"), "a?[2J???b??\xC3\xA9?\"\\");
    EXPECT_EQ(Plain(std::string_view("\0x", 2)), "?x");
}

TEST(Quoted, is_cut_at_sixty_bytes_between_characters)
{
    EXPECT_EQ(Quoted("a"), "\"a\"");
    EXPECT_EQ(Quoted(std::string(60, 'x')), '"' + std::string(60, 'x') + '"');
    EXPECT_EQ(Quoted(std::string(61, 'x')), '"' + std::string(60, 'x') + "...\"");
    EXPECT_EQ(Quoted(std::string(59, 'x') + "\xC3\xA9zz"), '"' + std::string(59, 'x') + "...\"");
    EXPECT_EQ(Quoted(std::string(58, 'x') + "\xC3\xA9zz"), '"' + std::string(58, 'x') + "\xC3\xA9...\"");
    EXPECT_EQ(Quoted(std::string(100, '\x80')).size(), 62U);
}

TEST(HasControls, finds_them_wherever_they_stand)
{
    EXPECT_TRUE(HasControls("a\x1f"));
    EXPECT_TRUE(
        HasControls("\x7f"
                    "b"));
    EXPECT_TRUE(HasControls("\xC3\xA9\xC2\x80"));
    EXPECT_TRUE(HasControls(std::string_view("\0", 1)));
    EXPECT_FALSE(HasControls("plain \xC2\xA0 \xC3\xA9"));
    EXPECT_FALSE(HasControls(""));
}

}  // namespace
}  // namespace kine_cli
