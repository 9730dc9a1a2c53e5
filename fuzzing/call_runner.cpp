// Runs one call on guarded records.
#include "call_runner.h"

#include <algorithm>
#include <cstring>

namespace kine::fuzz {

namespace {

// The argument whose memory an input lies in: its own, or that of an earlier input.
std::size_t HomeOf(const Call& call, std::size_t i)
{
    const std::size_t sameAs = call.arguments[i].sameAs;
    return sameAs < kMaxParams ? sameAs : i;
}

Bytes Copy(const unsigned char* from, std::size_t size)
{
    Bytes bytes;
    bytes.size = size;
    std::memcpy(bytes.data.data(), from, size);
    return bytes;
}

}  // namespace

unsigned char* CallRunner::PlaceInput(const Call& call, std::size_t i, bool isWritable)
{
    const auto& [value, bytes, isNull, place, sameAs] = call.arguments[i];
    unsigned char* writable = slots_.Writable(i, place, bytes.size);
    GuardedSlots::Open(writable, bytes.size);
    std::memcpy(writable, bytes.data.data(), bytes.size);
    if (isWritable) return writable;
    GuardedSlots::Close(writable, bytes.size);
    unsigned char* readOnly = slots_.ReadOnly(i, place, bytes.size);
    GuardedSlots::Open(readOnly, bytes.size);
    return readOnly;
}

unsigned char* CallRunner::PlaceResult(const Call& call, std::size_t i, unsigned char pattern)
{
    const std::size_t size = call.arguments[i].bytes.size;
    unsigned char* record = slots_.Writable(i, call.arguments[i].place, size);
    GuardedSlots::Open(record, size);
    std::memset(record, pattern, size);
    return record;
}

// Both records end, or begin, at the same byte.
unsigned char* CallRunner::OverlayResult(const Call& call, std::size_t input, unsigned char pattern)
{
    const Bytes& content = call.arguments[input].bytes;
    const std::size_t size = call.arguments[call.overlaidResult].bytes.size;
    const Place place = call.arguments[input].place;
    unsigned char* record = slots_.Writable(input, place, size);
    GuardedSlots::Open(record, size);
    std::memset(record, pattern, size);
    std::memcpy(slots_.Writable(input, place, content.size), content.data.data(), content.size);
    return record;
}

void CallRunner::CloseAll(const Call& call, const std::array<Argument, kMaxParams>& arguments)
{
    for (std::size_t i = 0; i < call.function->paramCount; ++i) {
        if (arguments[i].pointer == nullptr) continue;
        GuardedSlots::Close(static_cast<const unsigned char*>(arguments[i].pointer),
                            call.arguments[i].bytes.size);
    }
}

Outcome CallRunner::Run(const Call& call, unsigned char pattern, bool isOverlaid)
{
    const Export& function = *call.function;
    const std::size_t sharedInput = isOverlaid ? HomeOf(call, call.overlaidInput) : kMaxParams;
    std::array<Argument, kMaxParams> arguments{};
    Outcome outcome;

    for (std::size_t i = 0; i < function.paramCount; ++i) {
        arguments[i] = call.arguments[i].value;
        const Role role = function.params[i].role;
        if (role == Role::kValue || role == Role::kOut || call.arguments[i].isNull) continue;
        const std::size_t home = HomeOf(call, i);
        arguments[i].pointer = home != i ? arguments[home].pointer
                                         : PlaceInput(call, i, role == Role::kInOut || i == sharedInput);
    }
    std::array<Bytes, kMaxParams> before{};
    for (std::size_t i = 0; i < function.paramCount; ++i) {
        const Role role = function.params[i].role;
        if ((role != Role::kOut && role != Role::kInOut) || call.arguments[i].isNull) continue;
        if (role == Role::kOut) {
            const bool isOver = isOverlaid && i == call.overlaidResult;
            arguments[i].pointer =
                isOver ? OverlayResult(call, sharedInput, pattern) : PlaceResult(call, i, pattern);
        }
        before[i] = Copy(static_cast<unsigned char*>(arguments[i].pointer), call.arguments[i].bytes.size);
    }

    outcome.code = function.invoke(arguments);

    for (std::size_t i = 0; i < function.paramCount; ++i) {
        if (before[i].size == 0) continue;
        outcome.results[i] = Copy(static_cast<unsigned char*>(arguments[i].pointer), before[i].size);
        outcome.isUntouched[i] = outcome.results[i] == before[i];
    }
    outcome.textSize = std::min(printed_.Take(outcome.text), outcome.text.size());
    CloseAll(call, arguments);
    return outcome;
}

}  // namespace kine::fuzz
