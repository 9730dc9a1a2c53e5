// Runs one call on guarded records.
#pragma once

#include "call.h"
#include "guarded_slots.h"
#include "printed_text.h"

namespace kine::fuzz {

class CallRunner
{
public:
    // Results are filled with the pattern before the call. Inputs lie where they cannot be written; in an
    // overlaid run one of them shares its memory with a result.
    Outcome Run(const Call& call, unsigned char pattern, bool isOverlaid = false);

private:
    unsigned char* PlaceInput(const Call& call, std::size_t i, bool isWritable);
    unsigned char* PlaceResult(const Call& call, std::size_t i, unsigned char pattern);
    unsigned char* OverlayResult(const Call& call, std::size_t input, unsigned char pattern);
    void CloseAll(const Call& call, const std::array<Argument, kMaxParams>& arguments);

    GuardedSlots slots_;
    PrintedText printed_;
};

}  // namespace kine::fuzz
