// The report of a calibration: for people, and as JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "calib/analysis.h"
#include "calib/blame.h"
#include "calib/taught.h"

namespace kine_cli {

struct Outcome
{
    std::string what;  // "tool on the robot"
    Method method;
    Taught taught;
    Solution solution;
    std::string lines;  // that the library printed
    Blame blame;        // of a refusal
    Analysis analysis;  // of a success
    std::vector<std::string> advice;
    nlohmann::ordered_json cellFile;  // to paste

    bool IsRefused() const { return solution.code != KINE_OK; }
};

// What a person should do better next time, from the analysis.
std::vector<std::string> AdviceOn(const Outcome& outcome);

std::string JsonReport(const Outcome& outcome);
std::string TableReport(const Outcome& outcome);
// A refusal for the standard error.
std::string RefusalInWords(const Outcome& outcome);

nlohmann::ordered_json FrameAsJson(const KineFrame& frame);

}  // namespace kine_cli
