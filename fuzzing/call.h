// One call as data: an export with its arguments, and what came out of it.
#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <string_view>

#include "exports.h"
#include "guarded_slots.h"

namespace kine::fuzz {

// The bytes of a record.
struct Bytes
{
    std::array<unsigned char, kMaxRecord> data{};
    std::size_t size = 0;

    template <class Record>
    static Bytes Of(const Record& record)
    {
        Bytes bytes;
        bytes.size = sizeof record;
        std::memcpy(bytes.data.data(), &record, sizeof record);
        return bytes;
    }

    template <class Record>
    Record As() const
    {
        Record record;
        std::memcpy(&record, data.data(), sizeof record);
        return record;
    }

    bool operator==(const Bytes& other) const
    {
        return size == other.size && std::memcmp(data.data(), other.data.data(), size) == 0;
    }
};

struct CallArgument
{
    Argument value;  // of an integer or a number
    Bytes bytes;     // of a record that is read; of a result its size only
    bool isNull = false;
    Place place;
    std::size_t sameAs = kMaxParams;  // passes the pointer of this earlier argument
};

struct Call
{
    const Export* function = nullptr;
    std::array<CallArgument, kMaxParams> arguments{};
    // Asks for one more run in which this result lies over this input.
    std::size_t overlaidResult = kMaxParams;
    std::size_t overlaidInput = kMaxParams;
};

struct Outcome
{
    KineResult code = 0;
    std::array<Bytes, kMaxParams> results{};     // of results and of records changed in place
    std::array<bool, kMaxParams> isUntouched{};  // every bit as it was before
    std::array<char, 320> text{};                // printed, longer than any line
    std::size_t textSize = 0;

    [[nodiscard]] std::string_view Text() const { return {text.data(), textSize}; }
};

// What the setup calls have told the library so far.
struct Cell
{
    bool isReady = false;         // the last initialisation succeeded
    bool wasInitialised = false;  // there was one, successful or not
    std::uint32_t armType = 0;    // of the last initialisation
    bool areUnitsEnabled = false;
    std::int32_t unitCount = 0;
    std::int32_t itemCount = 0;
};

// Says on standard error what a call broke, shows the call, and ends the process.
[[noreturn]] void Fail(const Call& call, KineResult code, std::string_view what);

// Shows a call, and what came out of it, on standard error.
void Show(const Call& call);
void Show(const Outcome& outcome);

}  // namespace kine::fuzz
