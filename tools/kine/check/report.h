// The whole of what `kine check` says about one cell, as text and as JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "cell/cell.h"
#include "check/expectations.h"
#include "check/finding.h"
#include "check/round_trip.h"

namespace kine_cli {

struct CheckReport
{
    std::string file;
    std::string unreadable;  // why the file is no cell; then there is nothing else
    Cell cell;
    FindingList findings;
    bool isSetUp = false;  // otherwise nothing below was asked
    std::vector<Confirmation> confirmations;
    std::size_t samples = 0;
    std::vector<RoundTrip> trips;

    // "good", "good with 2 warnings", "wrong: 1 error"
    std::string Verdict() const;
};

CheckReport CheckCell(const std::string& file, std::size_t samples, PrintedLines& printed);

std::string ReportText(const CheckReport& report);
nlohmann::ordered_json ReportJson(const CheckReport& report);

}  // namespace kine_cli
