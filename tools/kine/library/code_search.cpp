#include "library/code_search.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <utility>
#include <vector>

#include "library/codes.h"
#include "text/numbers.h"

namespace kine_cli {
namespace {

using kinedll::CodeText;

constexpr std::string_view kPrefix = "KINE_ERR_";

// The steps of the chains, as their lines number them.
constexpr std::array<std::pair<char, std::string_view>, 7> kForwardSteps = {
    {{'1', "the configuration of the joints"},
     {'2', "the check of what is held"},
     {'3', "the arm"},
     {'4', "from the base to the world"},
     {'5', "the description of the object in the cell"},
     {'6', "from the world to that object"},
     {'7', "the tool relative to the work object"}}};
constexpr std::array<std::pair<char, std::string_view>, 6> kInverseSteps = {
    {{'0', "the check of what is held"},
     {'1', "the description of the object in the cell"},
     {'2', "from that object to the world"},
     {'3', "from the world to the base"},
     {'4', "tool and load"},
     {'5', "the arm"}}};

// Lines that name no code; the longer ones first, where one starts like another.
constexpr std::array<std::pair<std::string_view, KineResult>, 4> kLines = {
    {{"ISLEGALWOBJ", KINE_ERR_WOBJ},
     {"ISLEGALMECHUNITANDEXTAXISNUM", KINE_ERR_MECH_UNIT_COUNT},
     {"ISLEGALMECHUNIT", KINE_ERR_MECH_UNIT},
     {"ISLEGALEXTAXISPARAM", KINE_ERR_EXT_AXIS_PARAM}}};

bool IsWordByte(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

std::string Upper(std::string_view text)
{
    std::string upper(text);
    for (char& c : upper) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return upper;
}

std::optional<std::uint32_t> Unsigned(std::string_view digits, int base)
{
    std::uint32_t value = 0;
    const auto [rest, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
    if (error != std::errc() || rest != digits.data() + digits.size()) return std::nullopt;
    return value;
}

// The numbers that a word may be, hexadecimal first.
std::vector<std::uint32_t> NumbersOf(std::string_view word)
{
    std::vector<std::uint32_t> numbers;
    const auto add = [&](std::optional<std::uint32_t> number) {
        if (number) numbers.push_back(*number);
    };
    if (word.starts_with("0x") || word.starts_with("0X")) {
        add(Unsigned(word.substr(2), 16));
    } else if (word.starts_with('-')) {
        // As a signed number: the one code that is negative, but any other is a number, too.
        const std::optional<std::uint32_t> size = Unsigned(word.substr(1), 10);
        if (size && *size <= 0x80000000U) numbers.push_back(0U - *size);
    } else {
        add(Unsigned(word, 16));
        add(Unsigned(word, 10));
    }
    return numbers;
}

std::string_view WithoutPrefix(std::string_view name)
{
    return name.starts_with(kPrefix) ? name.substr(kPrefix.size()) : name;
}

const CodeText* CodeNamed(std::string_view word)
{
    const std::string name = Upper(word);
    if (name == "KINE_SINGULAR") return TextsOf(KINE_SINGULAR);
    for (const CodeText& text : kinedll::kCodeTexts) {
        if (name == text.name || name == WithoutPrefix(text.name)) return &text;
    }
    return name == "OK" ? TextsOf(KINE_OK) : nullptr;
}

std::vector<std::string_view> WordsOf(std::string_view line)
{
    std::vector<std::string_view> words;
    for (std::size_t at = 0; at < line.size();) {
        std::size_t end = at;
        while (end < line.size() && IsWordByte(line[end])) ++end;
        if (end > at) words.push_back(line.substr(at, end - at));
        at = end + 1;
    }
    return words;
}

// The number and the step of "FK Error 6:24626" or "IK error 5:24727".
struct ChainLine
{
    bool isForward = false;
    char step = '0';
    std::uint32_t code = 0;
};
std::optional<ChainLine> ChainLineIn(std::string_view line)
{
    const std::string upper = Upper(line);
    for (const std::string_view start : {"FK ERROR ", "IK ERROR "}) {
        const std::size_t at = upper.find(start);
        if (at == std::string::npos) continue;
        const std::string_view rest = std::string_view(upper).substr(at + start.size());
        if (rest.size() < 3 || rest[1] != ':') continue;
        std::size_t end = 2;
        while (end < rest.size() && (IsWordByte(rest[end]) || rest[end] == '-')) ++end;
        const std::string_view digits = rest.substr(2, end - 2);
        const std::optional<std::uint32_t> code =
            digits.starts_with('-') ? Unsigned(digits.substr(1), 10) : Unsigned(digits, 10);
        if (code) return ChainLine{start[0] == 'F', rest[0], digits.starts_with('-') ? 0U - *code : *code};
    }
    return std::nullopt;
}

// How many letters must be changed, added or left out to make one word of the other.
std::size_t EditDistance(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t changed = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({changed, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row[b.size()];
}

const CodeText* NearestName(std::string_view word)
{
    // A third of the letters may be wrong; a word much longer than any name is none.
    constexpr std::size_t kLongest = 60;
    const std::string upper = Upper(word.substr(0, kLongest));
    const std::string_view name = WithoutPrefix(upper);
    const CodeText* nearest = nullptr;
    std::size_t fewest = name.size() / 3 + 1;
    for (const CodeText& text : kinedll::kCodeTexts) {
        const std::size_t changes = EditDistance(name, WithoutPrefix(text.name));
        if (changes >= fewest) continue;
        fewest = changes;
        nearest = &text;
    }
    return nearest;
}

}  // namespace

const CodeText* CodeOfWord(std::string_view word)
{
    for (const std::uint32_t number : NumbersOf(word)) {
        if (const CodeText* text = TextsOf(number)) return text;
    }
    return CodeNamed(word);
}

const CodeText* CodeInLine(std::string_view line)
{
    const std::vector<std::string_view> words = WordsOf(line);
    const CodeText* success = nullptr;
    for (const std::string_view word : words) {
        const bool isNumber = word.starts_with("0x") || word.starts_with("0X");
        if (!isNumber && !Upper(word).starts_with("KINE_")) continue;
        const CodeText* text = CodeOfWord(word);
        if (text && text->code != KINE_OK) return text;
        if (text) success = text;
    }
    if (success) return success;
    if (const std::optional<ChainLine> chain = ChainLineIn(line)) return TextsOf(chain->code);
    const std::string upper = Upper(line);
    for (const auto& [start, code] : kLines) {
        if (upper.find(start) != std::string::npos) return TextsOf(code);
    }
    // A sentence with one number that is a code, such as "the controller says 24727".
    const CodeText* only = nullptr;
    for (const std::string_view word : words) {
        const CodeText* text = word.size() < 4 || CodeNamed(word) ? nullptr : CodeOfWord(word);
        if (text && only) return nullptr;
        if (text) only = text;
    }
    return only;
}

std::string StepInLine(std::string_view line)
{
    const std::optional<ChainLine> chain = ChainLineIn(line);
    if (!chain) return {};
    const auto words = [&](const auto& steps, const char* name) -> std::string {
        for (const auto& [number, what] : steps) {
            if (number == chain->step)
                return "step " + std::string(1, number) + " of the " + name + " chain: " + std::string(what);
        }
        return {};
    };
    return chain->isForward ? words(kForwardSteps, "forward") : words(kInverseSteps, "inverse");
}

const CodeText* NearestCode(std::string_view word)
{
    // The codes but one are 0x6000 to 0x609A; what lies further off is another library's number.
    constexpr std::uint32_t kLowest = 0x5F00;
    constexpr std::uint32_t kHighest = 0x61FF;
    for (const std::uint32_t number : NumbersOf(word)) {
        if (number < kLowest || number > kHighest) continue;
        const auto distance = [number](const CodeText& text) {
            return std::max(text.code, number) - std::min(text.code, number);
        };
        return &*std::min_element(
            std::begin(kinedll::kCodeTexts), std::end(kinedll::kCodeTexts),
            [&](const CodeText& a, const CodeText& b) { return distance(a) < distance(b); });
    }
    return NearestName(word);
}

}  // namespace kine_cli
