#include "rows/row_parser.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

#include "failure.h"
#include "text/numbers.h"
#include "text/quoted.h"

namespace kine_cli {
namespace {

constexpr std::size_t kFrameFields = 6;
constexpr std::size_t kConfigFields = 4;
constexpr std::array<std::string_view, kFrameFields> kFrameNames = {"x_mm",  "y_mm",  "z_mm",
                                                                    "a_deg", "b_deg", "c_deg"};

// Columns that this program writes besides the numbers of a target.
constexpr std::array<std::string_view, 5> kPassedOver = {"posture", "solution", "step", "error", "lines"};

bool IsSeparator(char c) { return c == ',' || c == ';' || c == '\t'; }

void Split(std::string_view line, std::vector<std::string_view>& fields)
{
    fields.clear();
    std::size_t start = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '"' && i == start) i = std::min(line.find('"', i + 1), line.size() - 1);
        if (!IsSeparator(line[i])) continue;
        fields.push_back(line.substr(start, i - start));
        start = i + 1;
    }
    fields.push_back(line.substr(start));
}

// A text in quotes loses them.
std::string_view Unquoted(std::string_view text)
{
    text = Trim(text);
    if (text.size() > 1 && text.front() == '"' && text.back() == '"') text = text.substr(1, text.size() - 2);
    return text;
}

// "q3_deg" -> 2 for prefix "q" and suffix "_deg"
std::optional<std::size_t> NumberedColumn(std::string_view name, std::string_view prefix,
                                          std::string_view suffix)
{
    if (name.size() != prefix.size() + 1 + suffix.size() || !name.starts_with(prefix) ||
        !name.ends_with(suffix)) {
        return std::nullopt;
    }
    const char digit = name[prefix.size()];
    if (digit < '1' || digit > '9') return std::nullopt;
    return static_cast<std::size_t>(digit - '1');
}

}  // namespace

// Where a column goes: an index into the values of its kind, counted on from these.
enum RowParser::Slot : std::uint8_t
{
    kAxis = 0,
    kExternal = 8,
    kFrame = 14,
    kConfig = 20,
    kResult = 24,
    kName = 25,
    kNowhere = 26
};

RowParser::RowParser(Shape shape, Widths widths, std::string source)
    : shape_(shape), widths_(widths), source_(std::move(source))
{}

bool RowParser::IsEmpty(std::string_view line)
{
    line = Trim(line);
    return line.empty() || line.front() == '#';
}

void RowParser::Fail(std::uint64_t number, std::size_t field, const std::string& text) const
{
    std::string place = source_;
    if (number > 0) place += ":" + std::to_string(number);
    if (field < names_.size()) place += ": column " + std::to_string(field + 1) + " (" + names_[field] + ")";
    FailFile(place + ": " + text);
}

void RowParser::TakeName(std::string_view name, std::uint64_t number)
{
    const auto add = [&](std::size_t slot) {
        if (slot < kNowhere && std::find(slots_.begin(), slots_.end(), slot) != slots_.end()) {
            names_.clear();
            Fail(number, 0, "column " + Quoted(name) + " is given twice");
        }
        slots_.push_back(static_cast<std::uint8_t>(slot));
        names_.emplace_back(name);
    };
    if (name == "target" || name == "name") return add(kName);
    if (name == "result") return add(kResult);
    if (std::find(kPassedOver.begin(), kPassedOver.end(), name) != kPassedOver.end()) return add(kNowhere);
    const auto external = NumberedColumn(name, "e", "");
    if (external && *external < widths_.externalAxes) return add(kExternal + *external);
    if (shape_ != Shape::kPoses) {
        const auto axis = NumberedColumn(name, "q", "_deg");
        if (axis && *axis < widths_.axes) return add(kAxis + *axis);
    }
    const auto config = NumberedColumn(name, "cfg", "");
    if (config && *config < kConfigFields) {
        // `kine ik --all` writes them beside joints, which say it all.
        return add(shape_ == Shape::kJoints ? std::size_t{kNowhere} : kConfig + *config);
    }
    if (shape_ != Shape::kJoints) {
        const auto* const frame = std::find(kFrameNames.begin(), kFrameNames.end(), name);
        if (frame != kFrameNames.end())
            return add(kFrame + static_cast<std::size_t>(frame - kFrameNames.begin()));
    }
    std::string known = "target, result";
    if (shape_ != Shape::kPoses) known += ", q1_deg to q" + std::to_string(widths_.axes) + "_deg";
    if (shape_ != Shape::kJoints) known += ", x_mm, y_mm, z_mm, a_deg, b_deg, c_deg, cfg1 to cfg4";
    if (widths_.externalAxes > 0) known += ", e1 to e" + std::to_string(widths_.externalAxes);
    names_.clear();
    Fail(number, 0, "unknown column " + Quoted(name) + "; known are " + known);
}

bool RowParser::TakeHeader(std::string_view line, std::uint64_t number)
{
    Split(line, fields_);
    const std::string_view first = Unquoted(fields_.front());
    const bool isName =
        !first.empty() && first.find_first_not_of("+-.0123456789") == 0 && !ParseNumber(first);
    if (!isName) return false;
    if (first.front() == '{')
        Fail(number, 0, "is JSON; rows are comma-separated values, as --csv writes them");
    for (const std::string_view field : fields_) TakeName(Unquoted(field), number);
    const auto has = [&](std::size_t slot) {
        return std::find(slots_.begin(), slots_.end(), slot) != slots_.end();
    };
    if (shape_ == Shape::kEither) shape_ = has(kFrame) ? Shape::kPoses : Shape::kJoints;

    const std::size_t start = shape_ == Shape::kJoints ? kAxis : kFrame;
    const std::size_t count = shape_ == Shape::kJoints ? widths_.axes : kFrameFields;
    std::size_t configs = 0;
    for (std::size_t i = 0; i < kConfigFields; ++i) configs += has(kConfig + i) ? 1U : 0U;
    for (std::size_t i = 0; i < count; ++i) {
        if (has(start + i)) continue;
        names_.clear();
        Fail(number, 0,
             "column \"" +
                 (shape_ == Shape::kJoints ? "q" + std::to_string(i + 1) + "_deg"
                                           : std::string(kFrameNames[i])) +
                 "\" is missing");
    }
    if (configs != 0 && configs != kConfigFields) {
        names_.clear();
        Fail(number, 0, "cfg1 to cfg4 come together or not at all");
    }
    hasConfig_ = configs == kConfigFields;
    hasHeader_ = true;
    return true;
}

void RowParser::UseUsualOrder(std::size_t fields, std::uint64_t number)
{
    const auto add = [&](std::size_t slot, std::size_t count, const auto& nameOf) {
        for (std::size_t i = 0; i < count; ++i) {
            slots_.push_back(static_cast<std::uint8_t>(slot + i));
            names_.push_back(nameOf(i));
        }
    };
    slots_.clear();
    names_.clear();
    hasConfig_ = false;
    if (shape_ == Shape::kEither) Fail(number, 0, "needs a header, to tell joints from poses");
    std::string wanted;
    if (shape_ == Shape::kJoints) {
        add(kAxis, widths_.axes, [](std::size_t i) { return "q" + std::to_string(i + 1) + "_deg"; });
        wanted = std::to_string(widths_.axes) + " axes";
    } else {
        add(kFrame, kFrameFields, [](std::size_t i) { return std::string(kFrameNames[i]); });
        wanted = "6 values of a frame";
        if (fields > kFrameFields) {
            hasConfig_ = true;
            add(kConfig, kConfigFields, [](std::size_t i) { return "cfg" + std::to_string(i + 1); });
        } else {
            wanted += ", or these and 4 configuration integers";
        }
    }
    if (fields > slots_.size()) {
        add(kExternal, widths_.externalAxes, [](std::size_t i) { return "e" + std::to_string(i + 1); });
    }
    if (fields == slots_.size()) return;
    names_.clear();
    if (widths_.externalAxes > 0)
        wanted += ", with or without " + std::to_string(widths_.externalAxes) + " external axes";
    Fail(number, 0, "has " + std::to_string(fields) + " values; expected " + wanted);
}

void RowParser::Store(std::size_t field, std::string_view text, std::uint64_t number, Target& target)
{
    const std::uint8_t slot = slots_[field];
    if (slot >= kResult) return;
    std::optional<double> value = ParseNumber(text);
    if (!value) value = ParseNumber(Unquoted(text));
    if (!value) Fail(number, field, Quoted(Trim(text)) + " is not a number");
    if (slot >= kConfig) {
        const std::array<std::int32_t*, kConfigFields> config = {&target.pose.Cfg1, &target.pose.Cfg2,
                                                                 &target.pose.Cfg3, &target.pose.Cfg4};
        if (*value < -2147483648.0 || *value > 2147483647.0 || *value != std::floor(*value)) {
            Fail(number, field, Quoted(Trim(text)) + " is not a whole number of 32 bits");
        }
        *config[slot - kConfig] = static_cast<std::int32_t>(*value);
    } else if (slot >= kFrame) {
        const std::array<double*, kFrameFields> frame = {&target.pose.Frame.X, &target.pose.Frame.Y,
                                                         &target.pose.Frame.Z, &target.pose.Frame.A,
                                                         &target.pose.Frame.B, &target.pose.Frame.C};
        *frame[slot - kFrame] = *value;
    } else if (slot >= kExternal) {
        target.joints.ExtAxis[slot - kExternal] = *value;
        target.pose.ExtAxis[slot - kExternal] = *value;
    } else {
        target.joints.Axis[slot - kAxis] = *value;
    }
}

bool RowParser::IsConfigOpen(std::uint64_t number) const
{
    std::size_t empty = 0;
    std::size_t last = 0;
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        if (slots_[i] < kConfig || slots_[i] >= kResult || !Trim(fields_[i]).empty()) continue;
        ++empty;
        last = i;
    }
    if (empty != 0 && empty != kConfigFields) Fail(number, last, "cfg1 to cfg4 come together or not at all");
    return empty != 0;
}

void RowParser::Parse(std::string_view line, std::uint64_t number, Target& target)
{
    Split(line, fields_);
    if (!hasHeader_ && fields_.size() != slots_.size()) UseUsualOrder(fields_.size(), number);
    if (fields_.size() != slots_.size()) {
        names_.clear();
        Fail(
            number, 0,
            "has " + std::to_string(fields_.size()) + " values, the header " + std::to_string(slots_.size()));
    }
    target = Target{};
    target.hasConfig = hasConfig_;
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        if (slots_[i] == kName) target.name = Unquoted(fields_[i]);
        if (slots_[i] == kResult) {
            const std::optional<KineResult> code = ParseHexCode(Unquoted(fields_[i]));
            if (!code) Fail(number, i, Quoted(Trim(fields_[i])) + " is no result code such as 0x0000");
            target.refusedBefore = *code;
        }
    }
    if (target.name.empty()) {
        numberText_ = std::to_string(number);
        target.name = numberText_;
    }
    if (target.refusedBefore != KINE_OK) return;
    if (hasConfig_) target.hasConfig = !IsConfigOpen(number);
    for (std::size_t i = 0; i < fields_.size(); ++i) {
        if (!target.hasConfig && slots_[i] >= kConfig && slots_[i] < kResult) continue;
        Store(i, fields_[i], number, target);
    }
}

}  // namespace kine_cli
