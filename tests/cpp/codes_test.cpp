// The codes that KineDll.hpp knows, against the definitions in the text of KineDll.h.
#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <string>

#include "KineDll.hpp"
#include "cpp/second_unit.h"

using namespace kinedll;

namespace {

std::map<std::string, KineResult> CodesOfHeader()
{
    std::ifstream header(KINE_HEADER);
    const std::string text{std::istreambuf_iterator<char>(header), {}};
    const std::regex definition("#define (KINE_OK|KINE_ERR_\\w+) (0x[0-9A-F]+)u");
    std::map<std::string, KineResult> codes;
    for (std::sregex_iterator it(text.begin(), text.end(), definition), end; it != end; ++it) {
        codes[(*it)[1]] = static_cast<KineResult>(std::stoul((*it)[2], nullptr, 16));
    }
    return codes;
}

}  // namespace

TEST(code_table, names_every_code_of_the_header_and_no_other)
{
    const std::map<std::string, KineResult> expected = CodesOfHeader();
    ASSERT_GT(expected.size(), 40U);
    std::map<std::string, KineResult> listed;
    for (const CodeText& text : kCodeTexts) listed[text.name] = text.code;
    EXPECT_EQ(listed, expected);
    EXPECT_EQ(std::size(kCodeTexts), expected.size()) << "a code is listed twice";
}

TEST(code_table, every_code_has_a_cause_and_a_remedy_of_its_own_number)
{
    std::set<KineResult> numbers;
    for (const CodeText& text : kCodeTexts) {
        EXPECT_TRUE(numbers.insert(text.code).second) << text.name;
        EXPECT_GT(std::string(text.cause).size(), 5U) << text.name;
        EXPECT_GT(std::string(text.remedy).size(), 5U) << text.name;
    }
}

TEST(Code, tells_its_text)
{
    for (const CodeText& text : kCodeTexts) {
        const Code code{text.code};
        EXPECT_STREQ(code.Name(), text.name);
        EXPECT_STREQ(code.Cause(), text.cause);
        EXPECT_STREQ(code.Remedy(), text.remedy);
        EXPECT_EQ(code.IsOk(), text.code == 0);
    }
    EXPECT_STREQ(Code{0x6097}.Name(), "KINE_ERR_IK_7");
    EXPECT_STREQ(Code{}.Name(), "KINE_OK");
}

TEST(Code, number_that_is_none_says_so)
{
    for (const KineResult number : {1U, 0x6005U, 0x609BU, 0xFFFFFFFEU}) {
        EXPECT_STREQ(Code{number}.Name(), "unknown code");
        EXPECT_STRNE(Code{number}.Cause(), "");
        EXPECT_STRNE(Code{number}.Remedy(), "");
        EXPECT_FALSE(Code{number}.IsOk());
        EXPECT_EQ(TextOf(number).code, number);
    }
}

TEST(Code, compares_with_codes_and_with_numbers)
{
    constexpr Code kTool{KINE_ERR_TOOL};
    static_assert(kTool == KINE_ERR_TOOL && kTool == Code{0x6011});
    static_assert(kTool != KINE_ERR_WOBJ && kTool != Code{});
    static_assert(!(kTool == KINE_ERR_WOBJ) && !(kTool == Code{}));
    static_assert(!(kTool != KINE_ERR_TOOL) && !(kTool != Code{0x6011}));
    static_assert(TextOf(0x6011).code == 0x6011 && TextOf(1).code == 1, "looked up by the compiler");
}

// Two translation units of one program share one table and one copy of each wrapper.
TEST(header, is_the_same_in_two_translation_units)
{
    EXPECT_EQ(CodesInSecondUnit(), kCodeTexts);
    EXPECT_EQ(WrapperInSecondUnit(), &CalcPosDif);
}
