// Copies between the caller's memory and records. Byte by byte: the caller's records need not be aligned, and
// may overlap.
#pragma once

#include <cstring>

namespace kine {

// *from, which is not null.
template <class Record>
Record CopyIn(const Record* from)
{
    Record copy{};
    // NOLINTNEXTLINE(clang-analyzer-core.NonNullParamChecker): it does not follow Arguments::Require.
    std::memcpy(&copy, static_cast<const void*>(from), sizeof copy);
    return copy;
}

// to is not null: the exports require it before they compute.
template <class Record>
void CopyOut(const Record& record, Record* to)
{
    // NOLINTNEXTLINE(clang-analyzer-core.NonNullParamChecker): it does not follow Arguments::Require.
    std::memcpy(static_cast<void*>(to), &record, sizeof record);
}

}  // namespace kine
