// JSON that remembers where in its file every key and value stands, so that a message can point there.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kine_cli {

// Counted from 1; columns in characters, a tab is one.
struct Position
{
    std::size_t line = 0;
    std::size_t column = 0;
};

struct JsonMember;

struct JsonValue
{
    enum class Kind
    {
        kNull,
        kBoolean,
        kNumber,
        kString,
        kArray,
        kObject
    };

    Kind kind = Kind::kNull;
    Position position;
    bool boolean = false;
    double number = 0.0;
    std::string text;
    std::vector<JsonValue> items;
    std::vector<JsonMember> members;  // in the order of the file; no key twice
};

struct JsonMember
{
    std::string key;
    Position position;  // of the key
    JsonValue value;
};

// "a number", "an object", ...
std::string_view KindInWords(JsonValue::Kind kind);

// "cell.json:12:5"
std::string PlaceIn(std::string_view file, Position position);

// Fails with file, line and column for text that is not JSON, a key given twice in one object, a number out
// of the range of a double, and nesting so deep that no cell needs it.
JsonValue ParseJson(std::string_view text, std::string_view file);

}  // namespace kine_cli
