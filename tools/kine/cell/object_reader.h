// Reads the fields of one JSON object. Every fault is noted with its place and path; reading goes on, so that
// one run shows all of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cell/cell.h"
#include "json/source_json.h"

namespace kine_cli {

// The faults of a file and the places of its fields.
class Findings
{
public:
    explicit Findings(Cell& cell) : cell_(cell) {}

    void Note(const std::string& path, Position position) { cell_.places.emplace(path, position); }
    void Fault(const std::string& path, Position position, const std::string& text);
    // Whether one more fault is shown rather than counted.
    bool IsRoomLeft() const { return faults_.size() < kMostFaultsShown; }
    // Fails with all faults, when there are any.
    void Settle() const;

private:
    static constexpr std::size_t kMostFaultsShown = 20;

    Cell& cell_;
    std::size_t count_ = 0;
    std::vector<std::string> faults_;
};

class ObjectReader
{
public:
    // A value that is no object is a fault and reads as an empty one.
    ObjectReader(const JsonValue& value, std::string path, Findings& findings);

    // The value of a key, or null. Asking makes the key known.
    const JsonValue* Find(std::string_view key);
    const JsonValue* Require(std::string_view key);

    double Number(std::string_view key, double otherwise);
    double RequiredNumber(std::string_view key);
    std::int64_t Integer(std::string_view key, std::int64_t lowest, std::int64_t highest,
                         std::int64_t otherwise);
    bool Boolean(std::string_view key, bool otherwise);
    std::string Text(std::string_view key);
    // Index of the text in `words`, or `otherwise`.
    std::size_t Word(std::string_view key, std::span<const std::string_view> words, std::size_t otherwise);
    // Fills the start of `numbers`; how many the array has, 0 for none. Fewer than `fewest` or more than
    // there is room for is a fault.
    std::size_t Numbers(std::string_view key, std::span<double> numbers, std::size_t fewest);

    // Of the value of a key, and of the object itself.
    void Fault(std::string_view key, const std::string& text);
    void Fault(const std::string& text);
    std::string PathOf(std::string_view key) const;
    Findings& AllFindings() { return findings_; }
    bool IsGiven() const { return isGiven_; }

    // Every key that was not asked for is a fault. Called last.
    void RefuseTheRest();

private:
    const JsonValue& value_;
    std::string path_;
    Findings& findings_;
    bool isGiven_;
    std::vector<std::string> known_;
};

// Reads one number of an array or a field.
bool ReadNumber(const JsonValue& value, const std::string& path, Findings& findings, double& number);

}  // namespace kine_cli
