#include "text/numbers.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace kine_cli {
namespace {

// Above this size fixed decimals say nothing and break the columns.
constexpr double kLargestFixed = 1e9;

constexpr std::int64_t kRoundedScale = 10'000'000'000;
// Scaled numbers below this are whole to less than half a unit.
constexpr double kLargestRounded = 4503599627370496.0 / static_cast<double>(kRoundedScale);

// "00" to "99"
constexpr std::array<char, 200> kDigitPairs = [] {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}();

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

void AppendRounded(std::string& text, double value)
{
    if (!(std::fabs(value) < kLargestRounded)) return AppendNumber(text, value);
    const auto scaled =
        static_cast<std::int64_t>(std::nearbyint(std::fabs(value) * static_cast<double>(kRoundedScale)));
    std::array<char, 32> digits;  // NOLINT(cppcoreguidelines-pro-type-member-init): written below
    char* at = digits.data();
    if (value < 0.0 && scaled != 0) *at++ = '-';
    char* const point = std::to_chars(at, digits.data() + digits.size(), scaled / kRoundedScale).ptr;
    char* end = point + 1;
    auto decimals = static_cast<std::uint64_t>(scaled % kRoundedScale);
    for (std::uint64_t unit = kRoundedScale / 100; unit > 0; unit /= 100) {
        std::memcpy(end, kDigitPairs.data() + 2 * (decimals / unit), 2);
        decimals %= unit;
        end += 2;
    }
    while (end[-1] == '0' && end - 1 > point) --end;
    *point = '.';
    if (end - 1 == point) --end;
    text.append(digits.data(), static_cast<std::size_t>(end - digits.data()));
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

std::optional<std::uint32_t> ParseHexCode(std::string_view text)
{
    if (!text.starts_with("0x")) return std::nullopt;
    std::uint32_t code = 0;
    const char* end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data() + 2, end, code, 16);
    if (error != std::errc() || rest != end) return std::nullopt;
    return code;
}

}  // namespace kine_cli
