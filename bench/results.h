// What a run found, in tab-separated files for report.py and latency_svg.py.
#pragma once

#include <fstream>
#include <string>
#include <vector>

#include "contest.h"

namespace kine::bench {

enum class Better
{
    kHigher,
    kLower
};

// A figure and what is expected of it. NaN stands for no goal.
struct Bar
{
    std::string figure;
    double value;
    std::string unit;
    double must;
    double aim;
    Better better;
};

class Results
{
public:
    // Throws when a file cannot be written.
    explicit Results(const std::string& directory);

    void Fact(const std::string& name, const std::string& value);
    void Add(const Bar& bar);
    // A row and a distribution for each contestant.
    void Add(const std::string& contest, const std::vector<Standing>& standings);

    // What must hold on every machine, however slow. Says on standard error what does not.
    void Require(bool holds, const std::string& what);
    [[nodiscard]] bool IsCorrect() const { return isCorrect_; }

private:
    std::ofstream facts_, bars_, contests_, distributions_;
    bool isCorrect_ = true;
};

}  // namespace kine::bench
