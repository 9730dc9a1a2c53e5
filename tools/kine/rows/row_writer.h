// Rows of answers, as a table for people, as JSON (one object per line) or as comma-separated values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "KineDll.h"
#include "rows/target.h"
#include "text/quoted.h"

namespace kine_cli {

enum class Format
{
    kTable,
    kJson,
    kCsv
};

struct Column
{
    std::string name;
    int width = 0;     // in a table; a negative one for texts, which stand on the left
    int decimals = 0;  // in a table
};

// The columns of targets, as RowParser reads them.
std::vector<Column> JointColumns(Widths widths);
std::vector<Column> FrameColumns();
std::vector<Column> PoseColumns(Widths widths);

class RowWriter
{
public:
    // Every row starts with the target and ends with the result; `columns` are those between.
    RowWriter(Format format, Widths widths, std::vector<Column> columns);

    Format OutputFormat() const { return format_; }
    std::string Header() const;

    void Begin(std::string_view target);
    void Number(double value);
    void Integer(std::int64_t value);
    void Text(std::string_view value);
    void Empty();
    void Joints(const KineJoint& joints);
    void Frame(const KineFrame& frame);
    // An open configuration has no integers.
    void Pose(const KinePose& pose, bool hasConfig = true);
    void End();
    // Ends the row with a refusal: columns that are not written yet stay empty. JSON has the lines too.
    void EndRefused(KineResult code, const std::string& lines);

    // What has been written since the last time.
    std::string& Written() { return out_; }

private:
    void Separate();

    Format format_;
    Widths widths_;
    std::vector<Column> columns_;
    std::vector<std::string> keys_;  // of JSON, with quotes and colon
    std::size_t next_ = 0;
    std::string out_;
};

}  // namespace kine_cli
