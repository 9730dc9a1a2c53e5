#include "json/source_json.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <vector>

#include "failure.h"
#include "text/quoted.h"

namespace kine_cli {
namespace {

using nlohmann::json;

constexpr std::size_t kDeepestNesting = 16;

// Walks the text for the parser and keeps count of what it has taken.
class CountingIterator
{
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = const char&;

    CountingIterator(const char* at, const char*& taken) : at_(at), taken_(&taken) {}

    reference operator*() const { return *at_; }
    CountingIterator& operator++()
    {
        *taken_ = ++at_;
        return *this;
    }
    CountingIterator operator++(int)
    {
        const CountingIterator before = *this;
        ++*this;
        return before;
    }
    friend bool operator==(const CountingIterator& a, const CountingIterator& b) { return a.at_ == b.at_; }
    friend bool operator!=(const CountingIterator& a, const CountingIterator& b) { return !(a == b); }

private:
    const char* at_;
    const char** taken_;
};

bool IsPartOfNumber(char c)
{
    return (c >= '0' && c <= '9') || c == '-' || c == '+' || c == '.' || c == 'e' || c == 'E';
}

// Builds the tree from the events of the parser. The events carry no position; each is told apart by how far
// the parser has read when it comes.
class TreeBuilder
{
public:
    TreeBuilder(std::string_view text, std::string_view file, const char* const& taken)
        : text_(text), file_(file), taken_(taken)
    {}

    bool null() { return AddFixed(JsonValue::Kind::kNull, 4), true; }
    bool boolean(bool value)
    {
        AddFixed(JsonValue::Kind::kBoolean, value ? 4 : 5).boolean = value;
        return true;
    }
    bool number_integer(std::int64_t value) { return AddNumber(static_cast<double>(value)); }
    bool number_unsigned(std::uint64_t value) { return AddNumber(static_cast<double>(value)); }
    bool number_float(double value, const std::string&) { return AddNumber(value); }
    bool string(std::string& value)
    {
        Add(JsonValue::Kind::kString, StartOfString()).text = std::move(value);
        return true;
    }
    bool binary(json::binary_t&) { return false; }
    bool start_object(std::size_t) { return Open(JsonValue::Kind::kObject); }
    bool start_array(std::size_t) { return Open(JsonValue::Kind::kArray); }
    bool end_object() { return Close(); }
    bool end_array() { return Close(); }
    bool key(std::string& value)
    {
        std::vector<JsonMember>& members = open_.back()->members;
        const Position position = PositionOf(StartOfString());
        const auto [first, isNew] = keys_.back().try_emplace(value, position.line);
        if (!isNew) {
            FailFile(PlaceIn(file_, position) + ": " + Quoted(value) +
                     " is given twice in one object; first in line " + std::to_string(first->second));
        }
        members.push_back({std::move(value), position, {}});
        return true;
    }
    bool parse_error(std::size_t, const std::string&, const json::exception& error)
    {
        // "[json.exception.out_of_range.406] number overflow parsing '1e999'"
        if (error.id == 406) Fail(StartOfNumber(), "a number too large");
        // "[json.exception.parse_error.101] parse error at line 1, column 2: syntax error while parsing value
        // - invalid literal; last read: '{a'"; what stands behind the last read is up to the file.
        std::string_view what = error.what();
        if (const std::size_t at = what.find(" - "); at != std::string_view::npos) what.remove_prefix(at + 3);
        what = what.substr(0, what.find("; last read: "));
        const std::size_t last = Taken() > 0 ? Taken() - 1 : 0;
        const std::size_t start = what.starts_with("unexpected string")   ? StartOfString()
                                  : what.starts_with("unexpected number") ? StartOfNumber()
                                                                          : StartOfWord(last);
        Fail(start, "not JSON: " + std::string(what) + HintFor(what));
    }

    [[noreturn]] void FailAtNul(std::size_t offset) { Fail(offset, "not JSON: a byte of value 0"); }

    JsonValue root;

private:
    [[noreturn]] void Fail(std::size_t offset, const std::string& text)
    {
        FailFile(PlaceIn(file_, PositionOf(offset)) + ": " + text);
    }

    // The slips that people make when they edit by hand.
    static std::string HintFor(std::string_view what)
    {
        if (what.ends_with("expected '}'") || what.ends_with("expected ']'")) return ", or a comma before it";
        if (what == "unexpected '}'; expected string literal" ||
            what == "unexpected ']'; expected '[', '{', or a literal") {
            return "; is there a comma too many?";
        }
        return "";
    }

    std::size_t Taken() const { return static_cast<std::size_t>(taken_ - text_.data()); }

    // The parser has just taken the closing quote. A quote inside stands behind an odd number of backslashes.
    std::size_t StartOfString() const
    {
        std::size_t at = Taken() - 1;
        for (;;) {
            at = text_.rfind('"', at - 1);
            std::size_t backslashes = 0;
            while (backslashes < at && text_[at - backslashes - 1] == '\\') ++backslashes;
            if (backslashes % 2 == 0) return at;
        }
    }

    // A number ends where something else begins, so that the parser has taken one more unless the text ends.
    std::size_t StartOfNumber() const
    {
        std::size_t end = Taken();
        if (!IsPartOfNumber(text_[end - 1])) --end;
        while (end > 0 && IsPartOfNumber(text_[end - 1])) --end;
        return end;
    }

    std::size_t StartOfWord(std::size_t at) const
    {
        const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
        const auto isOne = [&](char c) { return isLetter(c) || IsPartOfNumber(c); };
        if (at >= text_.size() || !isOne(text_[at])) return at;
        while (at > 0 && isOne(text_[at - 1])) --at;
        return at;
    }

    bool AddNumber(double value)
    {
        Add(JsonValue::Kind::kNumber, StartOfNumber()).number = value;
        return true;
    }

    JsonValue& AddFixed(JsonValue::Kind kind, std::size_t length) { return Add(kind, Taken() - length); }

    JsonValue& Add(JsonValue::Kind kind, std::size_t start)
    {
        JsonValue* value = &root;
        if (!open_.empty()) {
            JsonValue& parent = *open_.back();
            value = parent.kind == JsonValue::Kind::kObject ? &parent.members.back().value
                                                            : &parent.items.emplace_back();
        }
        value->kind = kind;
        value->position = PositionOf(start);
        return *value;
    }

    bool Open(JsonValue::Kind kind)
    {
        if (open_.size() == kDeepestNesting) Fail(Taken() - 1, "nested too deeply");
        open_.push_back(&Add(kind, Taken() - 1));
        keys_.emplace_back();
        return true;
    }
    bool Close()
    {
        open_.pop_back();
        keys_.pop_back();
        return true;
    }

    // Offsets come in rising order, so counting goes on from the last.
    Position PositionOf(std::size_t offset)
    {
        for (; counted_ < offset && counted_ < text_.size(); ++counted_) {
            const auto byte = static_cast<unsigned char>(text_[counted_]);
            if (byte == '\n') {
                ++at_.line;
                at_.column = 1;
            } else if ((byte & 0xC0U) != 0x80U) {
                ++at_.column;
            }
        }
        return at_;
    }

    std::string_view text_;
    std::string_view file_;
    const char* const& taken_;
    std::vector<JsonValue*> open_;
    std::vector<std::unordered_map<std::string, std::size_t>> keys_;  // of each open value, with their lines
    std::size_t counted_ = 0;
    Position at_{1, 1};
};

}  // namespace

std::string_view KindInWords(JsonValue::Kind kind)
{
    switch (kind) {
        case JsonValue::Kind::kNull: return "null";
        case JsonValue::Kind::kBoolean: return "true or false";
        case JsonValue::Kind::kNumber: return "a number";
        case JsonValue::Kind::kString: return "a text";
        case JsonValue::Kind::kArray: return "an array";
        case JsonValue::Kind::kObject: return "an object";
    }
    return "";
}

std::string PlaceIn(std::string_view file, Position position)
{
    return std::string(file) + ":" + std::to_string(position.line) + ":" + std::to_string(position.column);
}

JsonValue ParseJson(std::string_view text, std::string_view file)
{
    // The mark that some editors put in front of UTF-8 has no column.
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    const char* taken = text.data();
    TreeBuilder builder(text, file, taken);
    // The parser takes one for the end of the text, whatever stands behind it.
    if (const std::size_t nul = text.find('\0'); nul != std::string_view::npos) builder.FailAtNul(nul);
    json::sax_parse(CountingIterator(text.data(), taken), CountingIterator(text.data() + text.size(), taken),
                    &builder);
    return std::move(builder.root);
}

}  // namespace kine_cli
