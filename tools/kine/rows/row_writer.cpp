#include "rows/row_writer.h"

#include <algorithm>
#include <charconv>
#include <cstdlib>
#include <iterator>
#include <utility>

#include "library/codes.h"
#include "library/printed_lines.h"
#include "text/numbers.h"
#include "text/quoted.h"

namespace kine_cli {
namespace {

constexpr int kTargetWidth = 10;
constexpr int kNumberWidth = 11;
constexpr int kDecimals = 4;
constexpr int kConfigWidth = 5;

void AppendPadded(std::string& out, std::string_view text, int width)
{
    const auto room = static_cast<std::size_t>(std::abs(width));
    std::string plain;
    AppendPlain(plain, text);
    const std::size_t characters = static_cast<std::size_t>(std::count_if(
        plain.begin(), plain.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
    const std::size_t blanks = characters < room ? room - characters : 0;
    if (width > 0) out.append(blanks, ' ');
    out += plain;
    if (width < 0) out.append(blanks, ' ');
}

// What would end a text in a row of comma-separated values early is left out.
bool StaysInCsv(char c) { return c != ',' && c != ';' && c != '"' && static_cast<unsigned char>(c) >= ' '; }

void AppendCsvText(std::string& out, std::string_view text)
{
    std::copy_if(text.begin(), text.end(), std::back_inserter(out), StaysInCsv);
}

// The first text of a row. With # in front the row would be read as a comment.
void AppendCsvName(std::string& out, std::string_view name)
{
    while (!name.empty() && (!StaysInCsv(name.front()) || name.front() == '#' || name.front() == ' '))
        name.remove_prefix(1);
    AppendCsvText(out, name);
}

}  // namespace

std::vector<Column> JointColumns(Widths widths)
{
    std::vector<Column> columns;
    for (std::size_t i = 1; i <= widths.axes; ++i) {
        columns.push_back({"q" + std::to_string(i) + "_deg", kNumberWidth, kDecimals});
    }
    for (std::size_t i = 1; i <= widths.externalAxes; ++i) {
        columns.push_back({"e" + std::to_string(i), kNumberWidth, kDecimals});
    }
    return columns;
}

std::vector<Column> FrameColumns()
{
    std::vector<Column> columns;
    for (const char* name : {"x_mm", "y_mm", "z_mm", "a_deg", "b_deg", "c_deg"}) {
        columns.push_back({name, kNumberWidth, kDecimals});
    }
    return columns;
}

std::vector<Column> PoseColumns(Widths widths)
{
    std::vector<Column> columns = FrameColumns();
    for (const char* name : {"cfg1", "cfg2", "cfg3", "cfg4"}) columns.push_back({name, kConfigWidth, 0});
    for (std::size_t i = 1; i <= widths.externalAxes; ++i) {
        columns.push_back({"e" + std::to_string(i), kNumberWidth, kDecimals});
    }
    return columns;
}

RowWriter::RowWriter(Format format, Widths widths, std::vector<Column> columns)
    : format_(format), widths_(widths), columns_(std::move(columns))
{
    for (const Column& column : columns_) keys_.push_back(",\"" + column.name + "\":");
}

std::string RowWriter::Header() const
{
    std::string text;
    if (format_ == Format::kCsv) {
        text = "target";
        for (const Column& column : columns_) text += "," + column.name;
        text += ",result\n";
    } else if (format_ == Format::kTable) {
        AppendPadded(text, "target", -kTargetWidth);
        for (const Column& column : columns_) {
            text += ' ';
            AppendPadded(text, column.name, column.width);
        }
        text += " result\n";
    }
    return text;
}

void RowWriter::Begin(std::string_view target)
{
    next_ = 0;
    switch (format_) {
        case Format::kTable: AppendPadded(out_, target, -kTargetWidth); break;
        case Format::kCsv: AppendCsvName(out_, target); break;
        case Format::kJson:
            out_ += "{\"target\":";
            AppendJsonText(out_, target);
            break;
    }
}

void RowWriter::Separate()
{
    switch (format_) {
        case Format::kTable: out_ += ' '; break;
        case Format::kCsv: out_ += ','; break;
        case Format::kJson: out_ += keys_[next_]; break;
    }
    ++next_;
}

void RowWriter::Number(double value)
{
    const Column& column = columns_[next_];
    Separate();
    if (format_ == Format::kTable) {
        AppendFixed(out_, value, column.width, column.decimals);
    } else if (format_ == Format::kJson && !(value - value == 0.0)) {
        out_ += "null";  // JSON has no infinity and no NaN
    } else if (format_ == Format::kCsv) {
        AppendRounded(out_, value);
    } else {
        AppendNumber(out_, value);
    }
}

void RowWriter::Integer(std::int64_t value)
{
    const Column& column = columns_[next_];
    Separate();
    if (format_ == Format::kTable) {
        AppendPadded(out_, std::to_string(value), column.width);
        return;
    }
    char digits[24];
    out_.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

void RowWriter::Text(std::string_view value)
{
    const Column& column = columns_[next_];
    Separate();
    switch (format_) {
        case Format::kTable: AppendPadded(out_, value, column.width); break;
        case Format::kCsv: AppendCsvText(out_, value); break;
        case Format::kJson: AppendJsonText(out_, value); break;
    }
}

void RowWriter::Empty()
{
    const Column& column = columns_[next_];
    Separate();
    if (format_ == Format::kTable) AppendPadded(out_, "-", column.width);
    if (format_ == Format::kJson) out_ += "null";
}

void RowWriter::Joints(const KineJoint& joints)
{
    for (std::size_t i = 0; i < widths_.axes; ++i) Number(joints.Axis[i]);
    for (std::size_t i = 0; i < widths_.externalAxes; ++i) Number(joints.ExtAxis[i]);
}

void RowWriter::Frame(const KineFrame& frame)
{
    for (const double value : {frame.X, frame.Y, frame.Z, frame.A, frame.B, frame.C}) Number(value);
}

void RowWriter::Pose(const KinePose& pose, bool hasConfig)
{
    Frame(pose.Frame);
    for (const std::int32_t value : {pose.Cfg1, pose.Cfg2, pose.Cfg3, pose.Cfg4}) {
        if (hasConfig) {
            Integer(value);
        } else {
            Empty();
        }
    }
    for (std::size_t i = 0; i < widths_.externalAxes; ++i) Number(pose.ExtAxis[i]);
}

void RowWriter::End()
{
    switch (format_) {
        case Format::kTable: out_ += " 0x0000\n"; break;
        case Format::kCsv: out_ += ",0x0000\n"; break;
        case Format::kJson: out_ += ",\"result\":\"0x0000\"}\n"; break;
    }
}

void RowWriter::EndRefused(KineResult code, const std::string& lines)
{
    while (next_ < columns_.size()) Empty();
    switch (format_) {
        case Format::kTable: ((((out_ += ' ') += HexCode(code)) += ' ') += NameOf(code)) += '\n'; break;
        case Format::kCsv: ((out_ += ',') += HexCode(code)) += '\n'; break;
        case Format::kJson:
            (((out_ += ",\"result\":\"") += HexCode(code)) += "\",\"error\":\"") += NameOf(code);
            out_ += "\",\"lines\":[";
            for (std::size_t at = 0; at < lines.size();) {
                const std::size_t end = std::min(lines.find('\n', at), lines.size());
                if (at > 0) out_ += ',';
                AppendJsonText(out_, AsUtf8(lines.substr(at, end - at)));
                at = end + 1;
            }
            out_ += "]}\n";
            break;
    }
}

}  // namespace kine_cli
