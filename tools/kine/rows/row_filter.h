// What a command does with each target.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "library/printed_lines.h"
#include "rows/row_writer.h"
#include "rows/target.h"

namespace kine_cli {

// Where a filter puts its answers.
class Answers
{
public:
    Answers(RowWriter& writer, PrintedLines& printed) : row(writer), printed_(printed) {}

    // Ends the row that has begun with a refusal of the library, and takes what it printed.
    void Refuse(const Target& target, KineResult code);
    // A row without numbers that says why, for a target whose refusal is not the library's last one.
    void RefuseRow(const Target& target, KineResult code, const std::string& lines);
    // A row for a target that cannot be asked about.
    void RefuseRow(const Target& target, KineResult code);
    // Whether the library took it; otherwise its row is written as refused.
    bool Accept(const Target& target, KineResult code);

    RowWriter& row;
    std::string diagnostics;  // for people, one line for each refusal, in CSV and tables
    std::uint64_t refused = 0;

private:
    void Refuse(const Target& target, KineResult code, const std::string& lines);

    PrintedLines& printed_;
};

class RowFilter
{
public:
    RowFilter() = default;
    RowFilter(const RowFilter&) = delete;
    RowFilter& operator=(const RowFilter&) = delete;
    virtual ~RowFilter() = default;

    // Between the target and the result.
    virtual std::vector<Column> Columns() const = 0;
    // Writes one or more rows. Not asked about targets that were refused before.
    virtual void Answer(const Target& target, Answers& answers) = 0;
};

}  // namespace kine_cli
