// Why the library refuses a set of points: which of them cause it, in words.
#pragma once

#include "calib/method.h"

namespace kine_cli {

struct Blame
{
    std::vector<std::size_t> points;  // indices, rising
    std::vector<std::string> reasons;
};

Blame BlameFor(const Method& method, const Poses& poses, const std::vector<std::string>& names,
               const Solution& refused);

}  // namespace kine_cli
