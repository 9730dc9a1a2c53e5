// JSON with the positions of what stands in it.
#include "json/source_json.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "failure_text.h"

namespace kine_cli {
namespace {

JsonValue Parse(std::string_view text) { return ParseJson(text, "f"); }
std::string Says(std::string_view text)
{
    return FailureText([&] { Parse(text); });
}

std::string At(Position position)
{
    return std::to_string(position.line) + ":" + std::to_string(position.column);
}

const JsonMember& Member(const JsonValue& object, std::size_t index) { return object.members.at(index); }

TEST(ParseJson, every_kind_of_value_keeps_its_place)
{
    const JsonValue root = Parse(
        "{\"a\": null, \"b\":true,\n \"c\" : false,\"d\":-1.5e2 ,\"e\":\"x\",\n\"f\":[ 1,{}],\"g\":{}}");
    const std::vector<std::pair<std::string, std::string>> places = {
        {"1:2", "1:7"},   {"1:13", "1:17"}, {"2:2", "2:8"},  {"2:14", "2:18"},
        {"2:26", "2:30"}, {"3:1", "3:5"},   {"3:13", "3:17"}};
    ASSERT_EQ(root.members.size(), places.size());
    for (std::size_t i = 0; i < places.size(); ++i) {
        EXPECT_EQ(Member(root, i).key, std::string(1, static_cast<char>('a' + i)));
        EXPECT_EQ(At(Member(root, i).position), places[i].first) << i;
        EXPECT_EQ(At(Member(root, i).value.position), places[i].second) << i;
    }
    EXPECT_EQ(At(root.position), "1:1");
    EXPECT_EQ(Member(root, 0).value.kind, JsonValue::Kind::kNull);
    EXPECT_TRUE(Member(root, 1).value.boolean);
    EXPECT_FALSE(Member(root, 2).value.boolean);
    EXPECT_EQ(Member(root, 3).value.number, -150.0);
    EXPECT_EQ(Member(root, 4).value.text, "x");
    const JsonValue& array = Member(root, 5).value;
    ASSERT_EQ(array.items.size(), 2U);
    EXPECT_EQ(At(array.items[0].position), "3:7");
    EXPECT_EQ(At(array.items[1].position), "3:9");
    EXPECT_EQ(array.items[1].kind, JsonValue::Kind::kObject);
}

TEST(ParseJson, numbers_keep_their_place_whatever_follows)
{
    for (const char* text : {"[7]", "[7 ]", "[7,8]", "[7\n]"})
        EXPECT_EQ(At(Parse(text).items[0].position), "1:2") << text;
    EXPECT_EQ(At(Parse("  -7").position), "1:3");
    EXPECT_EQ(At(Parse("\n 7 \n").position), "2:2");
    EXPECT_EQ(At(Parse("[1,-2.5e+3,4]").items[1].position), "1:4");
    EXPECT_EQ(Parse("[18446744073709551616]").items[0].number, 18446744073709551616.0);
    EXPECT_EQ(Parse("[9223372036854775808,-9223372036854775808]").items[0].number, 9223372036854775808.0);
}

TEST(ParseJson, escapes_are_decoded_and_do_not_shift_what_follows)
{
    const JsonValue root = Parse(R"({"a\"\\": "\\\"", "b\\": "\u00e9\ud83e\uddbe\n"})");
    EXPECT_EQ(Member(root, 0).key, "a\"\\");
    EXPECT_EQ(At(Member(root, 0).position), "1:2");
    EXPECT_EQ(Member(root, 0).value.text, "\\\"");
    EXPECT_EQ(At(Member(root, 0).value.position), "1:11");
    EXPECT_EQ(At(Member(root, 1).position), "1:19");
    EXPECT_EQ(Member(root, 1).value.text, "\xC3\xA9\xF0\x9F\xA6\xBE\n");
    EXPECT_EQ(At(Member(root, 1).value.position), "1:26");
}

TEST(ParseJson, columns_count_characters_and_a_tab_is_one)
{
    // e with accent, euro sign, an arm: 2, 3 and 4 bytes
    EXPECT_EQ(At(Parse("[\"\xC3\xA9\xE2\x82\xAC\xF0\x9F\xA6\xBE\", 1]").items[1].position), "1:9");
    EXPECT_EQ(At(Parse("[\t\t1]").items[0].position), "1:4");
}

TEST(ParseJson, lines_may_end_as_on_Windows)
{
    const JsonValue root = Parse("{\r\n  \"a\": 1,\r\n  \"b\": 2\r\n}\r\n");
    EXPECT_EQ(At(Member(root, 0).value.position), "2:8");
    EXPECT_EQ(At(Member(root, 1).position), "3:3");
}

TEST(ParseJson, a_byte_order_mark_has_no_column)
{
    EXPECT_EQ(At(Parse("\xEF\xBB\xBF[1]").items[0].position), "1:2");
    EXPECT_EQ(Says("\xEF\xBB\xBF"),
              "f:1:1: not JSON: unexpected end of input; expected '[', '{', or a literal");
    EXPECT_EQ(Says("\xEF\xBB[1]").substr(0, 15), "f:1:2: not JSON");
}

TEST(ParseJson, a_key_twice_in_one_object_is_refused_with_both_lines)
{
    EXPECT_EQ(Says("{\"a\": 1,\n \"b\": {\"a\": 2},\n  \"a\": 3}"),
              "f:3:3: \"a\" is given twice in one object; first in line 1");
    EXPECT_EQ(Says(R"({"a": 1, "\u0061": 2})"),
              "f:1:10: \"a\" is given twice in one object; first in line 1");
    EXPECT_EQ(Says(R"({"\u001b[2J": 1, "\u001b[2J": 2})"),
              "f:1:18: \"\\u001b[2J\" is given twice in one object; first in line 1");
    EXPECT_EQ(Parse(R"([{"a": 1}, {"a": {"a": 2}}])").items.size(), 2U);
}

TEST(ParseJson, sixteen_levels_are_read_and_seventeen_refused)
{
    EXPECT_EQ(Says(std::string(16, '[') + std::string(16, ']')), "");
    EXPECT_EQ(Says(std::string(17, '[') + std::string(17, ']')), "f:1:17: nested too deeply");
    EXPECT_EQ(Says(std::string(1000000, '[')), "f:1:17: nested too deeply");
    std::string objects;
    for (int i = 0; i < 17; ++i) objects += "{\"a\":";
    EXPECT_EQ(Says(objects), "f:1:81: nested too deeply");
}

TEST(ParseJson, a_number_beyond_doubles_is_refused_where_it_starts)
{
    EXPECT_EQ(Says("[1,\n 1e999]"), "f:2:2: a number too large");
    EXPECT_EQ(Says("[-1e400 ]"), "f:1:2: a number too large");
    EXPECT_EQ(Says(std::string(400, '9')), "f:1:1: a number too large");
    EXPECT_EQ(Parse("[1e-999]").items[0].number, 0.0);
}

TEST(ParseJson, messages_point_at_the_start_of_what_is_wrong)
{
    EXPECT_EQ(Says("{\"a\": 1\n \"bcd\": 2}"),
              "f:2:2: not JSON: unexpected string literal; expected '}', or a comma before it");
    EXPECT_EQ(Says("[1 22]"),
              "f:1:4: not JSON: unexpected number literal; expected ']', or a comma before it");
    EXPECT_EQ(Says("[1 true]"),
              "f:1:4: not JSON: unexpected true literal; expected ']', or a comma before it");
    EXPECT_EQ(Says("{\"a\": 1,}"),
              "f:1:9: not JSON: unexpected '}'; expected string literal; is there a comma too many?");
    EXPECT_EQ(Says("[1,]"),
              "f:1:4: not JSON: unexpected ']'; expected '[', '{', or a literal; is there a comma too many?");
    EXPECT_EQ(Says("{\"a\" 1}"), "f:1:6: not JSON: unexpected number literal; expected ':'");
    EXPECT_EQ(Says("{a: 1}"), "f:1:2: not JSON: invalid literal");
    EXPECT_EQ(Says("[nan]"), "f:1:2: not JSON: invalid literal");
    EXPECT_EQ(Says("{}\n{}"), "f:2:1: not JSON: unexpected '{'; expected end of input");
    EXPECT_EQ(Says("// cell\n{}").substr(0, 24), "f:1:1: not JSON: invalid");
}

TEST(ParseJson, messages_carry_no_bytes_of_the_file)
{
    for (const std::string& text : {std::string("\x1b[31m"), std::string("[\"\x1b[2J\"]"),
                                    std::string("[\"\xFF\xFE\"]"), "\"" + std::string(500000, 'x'),
                                    "[1" + std::string(5000, 'x') + "]", "t" + std::string(5000, 'u')}) {
        const std::string message = Says(text);
        EXPECT_LT(message.size(), 160U);
        EXPECT_EQ(message.find('\x1b'), std::string::npos);
        EXPECT_EQ(message.substr(0, 4), "f:1:");
        EXPECT_TRUE(std::all_of(message.begin(), message.end(), [](char c) { return c >= ' ' && c < 127; }))
            << message;
    }
}

TEST(ParseJson, a_byte_of_zero_does_not_end_the_text)
{
    EXPECT_EQ(Says(std::string_view("{}\0{", 4)), "f:1:3: not JSON: a byte of value 0");
    EXPECT_EQ(Says(std::string_view("\n\0", 2)), "f:2:1: not JSON: a byte of value 0");
    EXPECT_EQ(Says(std::string_view("[\"a\0b\"]", 7)), "f:1:4: not JSON: a byte of value 0");
}

TEST(ParseJson, text_cut_short_anywhere_fails_with_a_place)
{
    const std::string whole =
        "{\"a\": [1, -2.5e3, true, null, \"x\\u00e9\\\"\"],\r\n \"\xC3\xA9\": {\"c\": false}}";
    EXPECT_EQ(Says(whole), "");
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const std::string message = Says(std::string_view(whole).substr(0, size));
        EXPECT_TRUE(message.starts_with("f:1:") || message.starts_with("f:2:")) << size << ": " << message;
    }
}

TEST(ParseJson, many_keys_in_one_line_take_no_time)
{
    // Looking at all before for each would take minutes.
    std::string text = "{";
    for (int i = 0; i < 200000; ++i)
        text += (i ? ",\"" : "\"") + std::to_string(i) + "\":" + std::to_string(i);
    const JsonValue root = Parse(text + "}");
    EXPECT_EQ(root.members.size(), 200000U);
    EXPECT_EQ(root.members.back().position.column, text.size() - 14);
}

TEST(ParseJson, agrees_with_the_plain_parser_on_changed_texts)
{
    // Whether it is JSON at all; the values in order.
    const std::string whole = R"({"a": [1, -2.5e3, true, null, "x"], "b": {"c": false}})";
    const std::string bytes = "{}[],:\"\\ 1-.eEtfn\n\x80";
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (const char byte : bytes) {
            std::string text = whole;
            text[at] = byte;
            const std::string message = Says(text);
            const bool isTwice = message.find("twice") != std::string::npos;
            EXPECT_EQ(message.empty() || isTwice, nlohmann::json::accept(text)) << text << "\n" << message;
        }
    }
}

}  // namespace
}  // namespace kine_cli
