// What a run of calls adds up to: a digest for every export and one of them all.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "support/digest.h"
#include "support/export_calls.h"

namespace kine::test {

class Tally
{
public:
    struct Entry
    {
        Digest digest;
        std::uint64_t calls = 0;
        std::uint64_t successes = 0;
    };

    // The results of one call of the export at this place in kExportCalls.
    void Add(std::size_t place, const CallResults& results)
    {
        Entry& entry = entries_[place];
        entry.digest.Add(&results, sizeof results);
        ++entry.calls;
        if (results.code == KINE_OK) ++entry.successes;
        codes_.insert(results.code);
    }

    // All that was printed. Threads print in any order, so that lines are taken in that of the alphabet.
    void AddLines(std::vector<std::string> lines)
    {
        std::sort(lines.begin(), lines.end());
        for (const std::string& line : lines) lines_.Add(line.data(), line.size());
        lineCount_ += lines.size();
    }

    [[nodiscard]] const Entry& Of(std::size_t place) const { return entries_[place]; }
    [[nodiscard]] const Digest& OfLines() const { return lines_; }
    [[nodiscard]] std::uint64_t Lines() const { return lineCount_; }
    [[nodiscard]] std::size_t Codes() const { return codes_.size(); }

    [[nodiscard]] std::uint64_t Calls() const
    {
        std::uint64_t sum = 0;
        for (const Entry& entry : entries_) sum += entry.calls;
        return sum;
    }

    [[nodiscard]] std::uint64_t Total() const
    {
        Digest total;
        const auto add = [&](std::uint64_t value) { total.Add(&value, sizeof value); };
        for (const Entry& entry : entries_) {
            add(entry.calls);
            add(entry.digest.Value());
        }
        add(lineCount_);
        add(lines_.Value());
        return total.Value();
    }

private:
    std::array<Entry, kExportCount> entries_{};
    Digest lines_;
    std::uint64_t lineCount_ = 0;
    std::set<std::uint64_t> codes_;
};

}  // namespace kine::test
