#include "cell/object_reader.h"

#include <algorithm>
#include <cmath>

#include "failure.h"
#include "text/quoted.h"

namespace kine_cli {
namespace {

constexpr std::size_t kLongestPath = 200;  // bytes shown

// How many single letters have to change to turn one word into the other (Levenshtein).
std::size_t EditDistance(std::string_view a, std::string_view b)
{
    std::vector<std::size_t> row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
        }
    }
    return row[b.size()];
}

std::string Suggestion(std::string_view key, const std::vector<std::string>& known)
{
    constexpr std::size_t kLongestCompared = 64;
    if (key.size() > kLongestCompared) return "";
    const std::string* best = nullptr;
    std::size_t bestDistance = key.size() / 2 + 1;
    for (const std::string& candidate : known) {
        // A key without its unit is the likeliest slip.
        const bool lacksUnit =
            candidate.size() > key.size() && candidate.starts_with(key) && candidate[key.size()] == '_';
        const std::size_t distance = lacksUnit ? 0 : EditDistance(key, candidate);
        if (distance < bestDistance) {
            best = &candidate;
            bestDistance = distance;
        }
    }
    return best ? "; did you mean \"" + *best + "\"?" : "";
}

}  // namespace

std::string Cell::PlaceOf(std::string_view path) const
{
    for (;;) {
        if (const auto place = places.find(path); place != places.end()) return PlaceIn(file, place->second);
        const std::size_t cut = path.find_last_of(".[");
        if (cut == std::string_view::npos) return file;
        path = path.substr(0, cut);
    }
}

void Findings::Fault(const std::string& path, Position position, const std::string& text)
{
    ++count_;
    if (faults_.size() == kMostFaultsShown) return;
    std::string fault = PlaceIn(cell_.file, position) + ": ";
    AppendPlain(fault, std::string_view(path).substr(0, kLongestPath));
    if (path.size() > kLongestPath) fault += "...";
    faults_.push_back(fault + (path.empty() ? "" : ": ") + text);
}

void Findings::Settle() const
{
    if (faults_.empty()) return;
    std::string text;
    for (const std::string& fault : faults_) text += (text.empty() ? "" : "\n") + fault;
    if (count_ > faults_.size())
        text += "\n" + cell_.file + ": and " + std::to_string(count_ - faults_.size()) + " more";
    FailFile(text);
}

ObjectReader::ObjectReader(const JsonValue& value, std::string path, Findings& findings)
    : value_(value),
      path_(std::move(path)),
      findings_(findings),
      isGiven_(value.kind == JsonValue::Kind::kObject)
{
    if (!path_.empty()) findings_.Note(path_, value.position);
    if (!isGiven_) {
        findings_.Fault(path_, value.position,
                        "is " + std::string(KindInWords(value.kind)) + ", should be an object");
    }
}

std::string ObjectReader::PathOf(std::string_view key) const
{
    return path_.empty() ? std::string(key) : path_ + "." + std::string(key);
}

const JsonValue* ObjectReader::Find(std::string_view key)
{
    known_.emplace_back(key);
    for (const JsonMember& member : value_.members) {
        if (member.key == key) {
            findings_.Note(PathOf(key), member.value.position);
            return &member.value;
        }
    }
    return nullptr;
}

const JsonValue* ObjectReader::Require(std::string_view key)
{
    const JsonValue* value = Find(key);
    if (!value && isGiven_) findings_.Fault(path_, value_.position, Quoted(key) + " is missing");
    return value;
}

void ObjectReader::Fault(std::string_view key, const std::string& text)
{
    const JsonValue* value = &value_;
    for (const JsonMember& member : value_.members) {
        if (member.key == key) value = &member.value;
    }
    findings_.Fault(PathOf(key), value->position, text);
}

void ObjectReader::Fault(const std::string& text) { findings_.Fault(path_, value_.position, text); }

bool ReadNumber(const JsonValue& value, const std::string& path, Findings& findings, double& number)
{
    findings.Note(path, value.position);
    if (value.kind != JsonValue::Kind::kNumber) {
        findings.Fault(path, value.position,
                       "is " + std::string(KindInWords(value.kind)) + ", should be a number");
        return false;
    }
    number = value.number;
    return true;
}

double ObjectReader::Number(std::string_view key, double otherwise)
{
    double number = otherwise;
    if (const JsonValue* value = Find(key)) ReadNumber(*value, PathOf(key), findings_, number);
    return number;
}

double ObjectReader::RequiredNumber(std::string_view key)
{
    double number = 0.0;
    if (const JsonValue* value = Require(key)) ReadNumber(*value, PathOf(key), findings_, number);
    return number;
}

std::int64_t ObjectReader::Integer(std::string_view key, std::int64_t lowest, std::int64_t highest,
                                   std::int64_t otherwise)
{
    const double number = Number(key, static_cast<double>(otherwise));
    if (number != std::floor(number) || number < static_cast<double>(lowest) ||
        number > static_cast<double>(highest)) {
        Fault(key,
              "should be a whole number from " + std::to_string(lowest) + " to " + std::to_string(highest));
        return otherwise;
    }
    return static_cast<std::int64_t>(number);
}

bool ObjectReader::Boolean(std::string_view key, bool otherwise)
{
    const JsonValue* value = Find(key);
    if (!value) return otherwise;
    if (value->kind != JsonValue::Kind::kBoolean) {
        Fault(key, "is " + std::string(KindInWords(value->kind)) + ", should be true or false");
        return otherwise;
    }
    return value->boolean;
}

std::string ObjectReader::Text(std::string_view key)
{
    const JsonValue* value = Find(key);
    if (!value) return "";
    if (value->kind != JsonValue::Kind::kString) {
        Fault(key, "is " + std::string(KindInWords(value->kind)) + ", should be a text");
        return "";
    }
    if (HasControls(value->text)) Fault(key, "has a control character, such as a tab or a new line");
    return value->text;
}

std::size_t ObjectReader::Word(std::string_view key, std::span<const std::string_view> words,
                               std::size_t otherwise)
{
    const JsonValue* value = Find(key);
    if (!value) return otherwise;
    std::string choice;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (value->kind == JsonValue::Kind::kString && value->text == words[i]) return i;
        choice += (i == 0                  ? ""
                   : i + 1 == words.size() ? " or "
                                           : ", ") +
                  ("\"" + std::string(words[i]) + "\"");
    }
    Fault(key, "should be " + choice);
    return otherwise;
}

std::size_t ObjectReader::Numbers(std::string_view key, std::span<double> numbers, std::size_t fewest)
{
    const JsonValue* value = Find(key);
    if (!value) return 0;
    const std::size_t count = value->items.size();
    if (value->kind != JsonValue::Kind::kArray || count < fewest || count > numbers.size()) {
        const std::string wanted = fewest == numbers.size()
                                       ? std::to_string(fewest)
                                       : std::to_string(fewest) + " to " + std::to_string(numbers.size());
        Fault(key,
              "should be an array of " + wanted + " numbers" +
                  (value->kind == JsonValue::Kind::kArray ? ", has " + std::to_string(count)
                                                          : ", is " + std::string(KindInWords(value->kind))));
        return 0;
    }
    for (std::size_t i = 0; i < count; ++i) {
        ReadNumber(value->items[i], PathOf(key) + "[" + std::to_string(i) + "]", findings_, numbers[i]);
    }
    return count;
}

void ObjectReader::RefuseTheRest()
{
    for (const JsonMember& member : value_.members) {
        if (std::find(known_.begin(), known_.end(), member.key) == known_.end()) {
            findings_.Fault(
                PathOf(member.key), member.position,
                "unknown key" + (findings_.IsRoomLeft() ? Suggestion(member.key, known_) : std::string()));
        }
    }
}

}  // namespace kine_cli
