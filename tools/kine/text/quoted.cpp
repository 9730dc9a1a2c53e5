#include "text/quoted.h"

#include <algorithm>
#include <cstddef>

namespace kine_cli {
namespace {

constexpr std::size_t kLongestQuoted = 60;  // bytes

// Length of the UTF-8 character at the start, 0 when there is none.
std::size_t Utf8Length(std::string_view text)
{
    const auto byte = [&](std::size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
    };
    const unsigned first = byte(0);
    const std::size_t length = first < 0x80U                     ? 1
                               : first >= 0xC2U && first < 0xE0U ? 2
                               : first >= 0xE0U && first < 0xF0U ? 3
                               : first >= 0xF0U && first < 0xF5U ? 4
                                                                 : 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0U) != 0x80U) return 0;
    }
    const bool overlong = (first == 0xE0U && byte(1) < 0xA0U) || (first == 0xF0U && byte(1) < 0x90U);
    const bool surrogate = first == 0xEDU && byte(1) >= 0xA0U;
    const bool tooLarge = first == 0xF4U && byte(1) >= 0x90U;
    return overlong || surrogate || tooLarge ? 0 : length;
}

// The control character that these bytes are, or -1.
int ControlOf(std::string_view character)
{
    const auto first = static_cast<unsigned char>(character[0]);
    if (character.size() == 1) return first < 0x20U || first == 0x7FU ? first : -1;
    const auto second = static_cast<unsigned char>(character[1]);
    return first == 0xC2U && second < 0xA0U ? second : -1;
}

// Calls each(character) for every UTF-8 character, and for a single byte, as an empty text, where there is
// none.
template <typename Each>
void ForEachCharacter(std::string_view text, const Each& each)
{
    while (!text.empty()) {
        const std::size_t length = Utf8Length(text);
        each(text.substr(0, length));
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
}

}  // namespace

void AppendJsonText(std::string& out, std::string_view text)
{
    constexpr std::string_view kHex = "0123456789abcdef";
    out += '"';
    ForEachCharacter(text, [&](std::string_view character) {
        if (character.empty()) {
            out += '?';
        } else if (character == "\"" || character == "\\") {
            (out += '\\') += character;
        } else if (character == "\n") {
            out += "\\n";
        } else if (const int control = ControlOf(character); control >= 0) {
            const auto code = static_cast<unsigned>(control);
            ((out += "\\u00") += kHex[code / 16]) += kHex[code % 16];
        } else {
            out += character;
        }
    });
    out += '"';
}

std::string Quoted(std::string_view text)
{
    std::string quoted;
    if (text.size() <= kLongestQuoted) {
        AppendJsonText(quoted, text);
        return quoted;
    }
    std::size_t end = kLongestQuoted;
    while (end > kLongestQuoted - 3 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
    AppendJsonText(quoted, text.substr(0, end));
    quoted.insert(quoted.size() - 1, "...");
    return quoted;
}

void AppendPlain(std::string& out, std::string_view text)
{
    ForEachCharacter(text, [&](std::string_view character) {
        if (character.empty() || ControlOf(character) >= 0) {
            out += '?';
        } else {
            out += character;
        }
    });
}

bool HasControls(std::string_view text)
{
    bool has = false;
    ForEachCharacter(text, [&](std::string_view character) {
        has = has || (!character.empty() && ControlOf(character) >= 0);
    });
    return has;
}

}  // namespace kine_cli
