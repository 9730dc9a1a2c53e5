// A picture of the residuals: a bar for each point beside the library's report, and where the points lie
// about their mean place.
#pragma once

#include <string>

#include "calib/report.h"

namespace kine_cli {

std::string ResidualPlot(const Outcome& outcome);

}  // namespace kine_cli
