// Faults on purpose, one for each tool that ./analyse runs. A tool is shown this file first and must report its
// fault: one that has been asked nothing is silent, too. No program is built from it.
#include <array>
#include <cstddef>

namespace {

struct Pair
{
    double first;
    double second;
};

void Fill(Pair* pair, bool known)
{
    if (!known) return;
    pair->first = 1.0;
    pair->second = 2.0;
}

const double* FourthOf(const double* values, std::size_t count) { return count > 3 ? values + 3 : nullptr; }

}  // namespace

// For clang-tidy: a field that is not set when nothing is known.
double ReadUnset(bool known)
{
    Pair pair;
    Fill(&pair, known);
    return pair.first;
}

// For cppcheck: a loop that goes one element too far.
double ReadBeyondEnd()
{
    std::array<double, 6> values{};
    double sum = 0.0;
    for (std::size_t i = 0; i <= 6; ++i) sum += values[i];
    return sum;
}

// For GCC: a null pointer from another function.
double ReadNull(const double* values, std::size_t count) { return *FourthOf(values, count); }
