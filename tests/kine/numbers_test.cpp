// Numbers to text and back.
#include "text/numbers.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

namespace kine_cli {
namespace {

std::string Appended(double value)
{
    std::string text;
    AppendNumber(text, value);
    return text;
}

TEST(ParseNumber, takes_what_is_a_number_as_a_whole)
{
    EXPECT_EQ(ParseNumber("12"), 12.0);
    EXPECT_EQ(ParseNumber("-12.5"), -12.5);
    EXPECT_EQ(ParseNumber("+3"), 3.0);
    EXPECT_EQ(ParseNumber(".5"), 0.5);
    EXPECT_EQ(ParseNumber("5."), 5.0);
    EXPECT_EQ(ParseNumber("1e-3"), 0.001);
    EXPECT_EQ(ParseNumber("1E3"), 1000.0);
    EXPECT_EQ(ParseNumber(" \t7\r"), 7.0);
    EXPECT_TRUE(std::signbit(ParseNumber("-0").value()));
}

TEST(ParseNumber, refuses_every_other_text)
{
    for (const char* text :
         {"",   " ", "+",   "-",         "+-5", "++5",    "--5",   "1 2",    "1,2", "0x10",  "12mm",    "1e",
          "e5", ".", "inf", "-infinity", "nan", "NaN(1)", "1e999", "-1e999", "+ 5", "1_000", "\xD9\xA1"}) {
        EXPECT_FALSE(ParseNumber(text)) << text;
    }
    EXPECT_FALSE(ParseNumber(std::string_view("1\0", 2)));
}

TEST(AppendNumber, random_bits_read_back_the_same)
{
    std::mt19937_64 random(20240607);
    for (int i = 0; i < 20000; ++i) {
        const auto value = std::bit_cast<double>(random());
        if (!std::isfinite(value)) continue;
        const std::optional<double> back = ParseNumber(Appended(value));
        ASSERT_TRUE(back) << Appended(value);
        ASSERT_EQ(std::bit_cast<std::uint64_t>(*back), std::bit_cast<std::uint64_t>(value))
            << Appended(value);
    }
}

TEST(AppendNumber, is_the_shortest_text)
{
    EXPECT_EQ(Appended(0.1), "0.1");
    EXPECT_EQ(Appended(-150.05), "-150.05");
    EXPECT_EQ(Appended(-0.0), "-0");
    EXPECT_EQ(Appended(std::numeric_limits<double>::denorm_min()), "5e-324");
    EXPECT_EQ(Appended(-std::numeric_limits<double>::max()), "-1.7976931348623157e+308");
}

TEST(Fixed, rounds_and_has_no_negative_zero)
{
    EXPECT_EQ(Fixed(1.25, 1), "1.2");  // a tie, to even
    EXPECT_EQ(Fixed(1.35, 1), "1.4");  // the double above 1.35
    EXPECT_EQ(Fixed(-0.00004, 4), "0.0000");
    EXPECT_EQ(Fixed(-0.00006, 4), "-0.0001");
    EXPECT_EQ(Fixed(-0.4, 0), "0");
    EXPECT_EQ(Fixed(999999999.0, 2), "999999999.00");
}

TEST(Fixed, numbers_too_large_for_a_column_are_short)
{
    EXPECT_EQ(Fixed(1e9, 2), "1e+09");
    EXPECT_EQ(Fixed(-1e300, 2), "-1e+300");
    EXPECT_EQ(Fixed(std::numeric_limits<double>::infinity(), 2), "inf");
    EXPECT_NE(Fixed(std::numeric_limits<double>::quiet_NaN(), 2).find("nan"), std::string::npos);
}

TEST(AppendFixed, stands_on_the_right_and_is_never_cut)
{
    std::string text = "a";
    AppendFixed(text, 1.5, 8, 2);
    EXPECT_EQ(text, "a    1.50");
    text.clear();
    AppendFixed(text, 123456.789, 4, 1);
    EXPECT_EQ(text, "123456.8");
}

TEST(HexCode, has_four_digits_at_least_and_capitals)
{
    EXPECT_EQ(HexCode(0), "0x0000");
    EXPECT_EQ(HexCode(0x609A), "0x609A");
    EXPECT_EQ(HexCode(0xFFFFFFFFU), "0xFFFFFFFF");
}

TEST(ParseHexCode, reads_back_what_HexCode_writes)
{
    for (const std::uint32_t code : {0U, 0x6012U, 0x609AU, 0xFFFFFFFFU}) {
        EXPECT_EQ(ParseHexCode(HexCode(code)), code);
    }
    EXPECT_EQ(ParseHexCode("0x60ab"), 0x60ABU);
}

TEST(ParseHexCode, refuses_every_other_text)
{
    for (const char* text : {"", "0x", "6012", "0X6012", "0x-123", "0x+123", "0x 123", "0x12G4",
                             "0x123456789", " 0x6012", "0x6012 ", "0x0x12"}) {
        EXPECT_FALSE(ParseHexCode(text)) << text;
    }
}

}  // namespace
}  // namespace kine_cli
