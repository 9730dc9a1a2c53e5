// Rows of comma-separated values to targets. Semicolons and tabs part values too, but not in quotes. Blank
// lines and lines that start with # are left out. A first line of names is the header and gives the order of
// the columns; without one joints are
//   q1_deg .. qN_deg [e1 ..]
// and poses
//   x_mm y_mm z_mm a_deg b_deg c_deg [cfg1 cfg2 cfg3 cfg4 [e1 ..]]
// All four integers of a row may be empty, which leaves the configuration open. A header may also have
// "target" (any text), "result" (a code: the row was refused before), and the columns that `kine` writes
// besides, which are passed over.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "rows/target.h"

namespace kine_cli {

class RowParser
{
public:
    // `source` is the file in messages.
    RowParser(Shape shape, Widths widths, std::string source);

    // Whether a line holds no row.
    static bool IsEmpty(std::string_view line);

    // Takes the line as header if it is one.
    bool TakeHeader(std::string_view line, std::uint64_t number);

    // Fails (bad file) with source, line and column. The target points into `line`.
    void Parse(std::string_view line, std::uint64_t number, Target& target);

    // kJoints or kPoses once a header is taken, or as asked for. Rows without a header cannot be of either
    // shape.
    Shape RowShape() const { return shape_; }

private:
    enum Slot : std::uint8_t;

    void UseUsualOrder(std::size_t fields, std::uint64_t number);
    void TakeName(std::string_view name, std::uint64_t number);
    void Store(std::size_t field, std::string_view text, std::uint64_t number, Target& target);
    // Whether the row leaves its configuration integers empty.
    bool IsConfigOpen(std::uint64_t number) const;
    [[noreturn]] void Fail(std::uint64_t number, std::size_t field, const std::string& text) const;

    Shape shape_;
    Widths widths_;
    std::string source_;
    bool hasHeader_ = false;
    bool hasConfig_ = false;
    std::vector<std::uint8_t> slots_;  // of each column
    std::vector<std::string> names_;   // of each column
    std::vector<std::string_view> fields_;
    std::string numberText_;  // name of a target without one
};

}  // namespace kine_cli
