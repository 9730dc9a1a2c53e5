// What must hold of the messages of kine, the program.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "failure.h"

namespace kine_cli::fuzz {

inline void Require(bool holds, const char* what, std::string_view text)
{
    if (holds) return;
    std::fprintf(stderr, "%s: %.*s\n", what, static_cast<int>(text.size()), text.data());
    std::abort();
}

// A bad file, each line with the file and a place (only "FILE: and 3 more" has none), and nothing in it that
// moves a cursor.
inline void CheckMessage(const Failure& failure, std::string_view file)
{
    std::string_view text = failure.what();
    Require(failure.code == ExitCode::kBadFile, "not a bad file", text);
    Require(!text.empty(), "no message", text);
    const std::string start = std::string(file) + ":";
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        Require(line.starts_with(start), "no file", line);
        const std::string_view rest = line.substr(start.size());
        Require((rest[0] >= '1' && rest[0] <= '9') || rest.starts_with(" and "), "no place", line);
        for (const char c : line)
            Require(static_cast<unsigned char>(c) >= ' ' && c != '\x7f', "a control character", line);
        text.remove_prefix(text.size() == line.size() ? line.size() : line.size() + 1);
    }
}

}  // namespace kine_cli::fuzz
