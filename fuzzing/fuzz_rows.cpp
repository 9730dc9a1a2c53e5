// Rows of any bytes: each is a target of finite numbers, or the run ends with a message with file and line. A
// target that is written as comma-separated values reads back to 10 decimals, and one written as JSON is
// JSON. The first byte of an input says what is asked for, the others are the file.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <nlohmann/json.hpp>

#include "program_checks.h"
#include "rows/line_blocks.h"
#include "rows/row_parser.h"
#include "rows/row_writer.h"

namespace kine_cli::fuzz {
namespace {

const std::string kFile = "rows.csv";

std::string Written(Format format, Shape shape, Widths widths, const Target& target)
{
    RowWriter writer(format, widths, shape == Shape::kJoints ? JointColumns(widths) : PoseColumns(widths));
    writer.Begin(target.name);
    if (shape == Shape::kJoints) {
        writer.Joints(target.joints);
    } else {
        writer.Pose(target.pose);
    }
    writer.End();
    return writer.Header() + writer.Written();
}

// To 10 decimals; half a unit of the last place of the largest number that is rounded comes on top.
bool IsRounded(double read, double wanted) { return read == wanted || std::fabs(read - wanted) <= 1.1e-10; }

void CheckTarget(Shape shape, Widths widths, const Target& target)
{
    for (const double value : target.joints.Axis) Require(std::isfinite(value), "not finite", target.name);
    const std::string csv = Written(Format::kCsv, shape, widths, target);
    const std::size_t end = csv.find('\n');
    RowParser parser(shape, widths, kFile);
    Require(parser.TakeHeader(csv.substr(0, end), 1), "no header", csv);
    const std::string row = csv.substr(end + 1, csv.size() - end - 2);
    Require(!RowParser::IsEmpty(row) && row.find('\n') == std::string::npos, "no row", csv);
    Target back;
    parser.Parse(row, 2, back);
    // A number is rounded once: what has been read back is written as it stands. A row without a name gets one.
    back.name = target.name;
    Require(Written(Format::kCsv, shape, widths, back) == csv, "another text the second time", csv);
    for (std::size_t i = 0; i < std::size(back.joints.Axis); ++i) {
        Require(shape == Shape::kPoses || IsRounded(back.joints.Axis[i], target.joints.Axis[i]),
                "other joints", csv);
    }
    const KineFrame& frame = back.pose.Frame;
    const KineFrame& wanted = target.pose.Frame;
    Require(shape == Shape::kJoints || (IsRounded(frame.X, wanted.X) && IsRounded(frame.Y, wanted.Y) &&
                                        IsRounded(frame.Z, wanted.Z) && IsRounded(frame.A, wanted.A) &&
                                        IsRounded(frame.B, wanted.B) && IsRounded(frame.C, wanted.C)),
            "another pose", csv);
    const std::string json = Written(Format::kJson, shape, widths, target);
    Require(nlohmann::json::accept(json) && json.find('\n') == json.size() - 1, "not one line of JSON", json);
    static_cast<void>(Written(Format::kTable, shape, widths, target));
}

void ReadRows(unsigned choice, const LineBlock& block)
{
    const auto shape = static_cast<Shape>(choice % 3);
    const Widths widths = {choice / 3 % 2 == 0 ? 6U : 4U, choice / 6 % 7};
    RowParser parser(shape, widths, kFile);
    bool isFirst = true;
    Target target;
    ForEachLine(block, [&](std::string_view line, std::uint64_t number) {
        if (RowParser::IsEmpty(line)) return;
        const bool isHeader = isFirst && parser.TakeHeader(line, number);
        isFirst = false;
        if (isHeader) return;
        parser.Parse(line, number, target);
        if (target.refusedBefore == KINE_OK) CheckTarget(parser.RowShape(), widths, target);
    });
}

}  // namespace
}  // namespace kine_cli::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) return 0;
    try {
        kine_cli::fuzz::ReadRows(data[0], {std::string(data + 1, data + size), 1});
    } catch (const kine_cli::Failure& failure) {
        kine_cli::fuzz::CheckMessage(failure, kine_cli::fuzz::kFile);
    }
    return 0;
}
