// Rows of any bytes: each is a target of finite numbers, or the run ends with a message with file and line. A
// target that is written as comma-separated values reads back to the same bits, and one written as JSON is
// JSON. The first byte of an input says what is asked for, the others are the file.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
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
    Require(std::memcmp(&back.joints, &target.joints, sizeof back.joints) == 0 || shape == Shape::kPoses,
            "other joints", csv);
    Require(std::memcmp(&back.pose, &target.pose, sizeof back.pose) == 0 || shape == Shape::kJoints,
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
