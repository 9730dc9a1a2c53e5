#include "text/numbers.h"

#include <array>
#include <charconv>
#include <cmath>

namespace kine_cli {
namespace {

// Above this size fixed decimals say nothing and break the columns.
constexpr double kLargestFixed = 1e9;

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

}  // namespace

std::string_view Trim(std::string_view text)
{
    while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
    return text;
}

std::optional<double> ParseNumber(std::string_view text)
{
    text = Trim(text);
    if (text.size() > 1 && text.front() == '+' && text[1] != '-') text.remove_prefix(1);
    double value = 0.0;
    const char* end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || rest != end || !std::isfinite(value)) return std::nullopt;
    return value;
}

void AppendNumber(std::string& text, double value)
{
    std::array<char, 32> digits;  // NOLINT(cppcoreguidelines-pro-type-member-init): written below
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    text.append(digits.data(), result.ptr);
}

std::string Fixed(double value, int decimals)
{
    if (!(std::fabs(value) < kLargestFixed)) {
        std::string text;
        AppendNumber(text, value);
        return text;
    }
    std::array<char, 64> digits;  // NOLINT(cppcoreguidelines-pro-type-member-init): written below
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                      std::chars_format::fixed, decimals);
    std::string text(digits.data(), result.ptr);
    if (text.front() == '-' && text.find_first_not_of("-0.") == std::string::npos) text.erase(0, 1);
    return text;
}

void AppendFixed(std::string& text, double value, int width, int decimals)
{
    const std::string number = Fixed(value, decimals);
    if (number.size() < static_cast<std::size_t>(width))
        text.append(static_cast<std::size_t>(width) - number.size(), ' ');
    text += number;
}

std::string HexCode(unsigned code)
{
    std::array<char, 16> digits;  // NOLINT(cppcoreguidelines-pro-type-member-init): written below
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), code, 16);
    std::string text(digits.data(), result.ptr);
    for (char& c : text) {
        if (c >= 'a') c = static_cast<char>(c - 'a' + 'A');
    }
    if (text.size() < 4) text.insert(0, 4 - text.size(), '0');
    return "0x" + text;
}

}  // namespace kine_cli
