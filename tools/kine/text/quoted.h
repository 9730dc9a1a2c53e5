// Text from outside in messages, tables and JSON: whatever bytes it holds, it moves no cursor and breaks no
// line.
#pragma once

#include <string>
#include <string_view>

namespace kine_cli {

// Appends text in quotes, escaped for JSON, control characters of every kind too. What is not UTF-8 becomes a
// question mark.
void AppendJsonText(std::string& out, std::string_view text);

// The same for a message, cut where it is long.
std::string Quoted(std::string_view text);

// Appends text for a table or a message without quotes: a question mark for each control character and for
// what is not UTF-8.
void AppendPlain(std::string& out, std::string_view text);

// Whether it holds a control character: U+0000 to U+001F, U+007F to U+009F.
bool HasControls(std::string_view text);

}  // namespace kine_cli
