// Reads the caller's parameter record. Its length depends on the arm, and gaps in it belong to nobody, so
// only the byte ranges a model names are copied.
#pragma once

#include <cstddef>
#include <cstring>
#include <initializer_list>

#include "KineDll.h"

namespace kine {

struct ByteRange
{
    std::size_t begin;
    std::size_t end;
};

// A view of the record with the named ranges filled in and zeros elsewhere. param is not null.
template <class View>
View CopyView(const KineKinematicParam* param, std::initializer_list<ByteRange> ranges)
{
    View view{};
    for (const ByteRange& range : ranges) {
        const auto* from = reinterpret_cast<const unsigned char*>(param) + range.begin;
        auto* to = reinterpret_cast<unsigned char*>(&view) + range.begin;
        std::memcpy(to, from, range.end - range.begin);
    }
    return view;
}

}  // namespace kine
