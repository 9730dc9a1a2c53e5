// Figures of the library alone: its tail, refused targets, threads, mechanical units, and what a call asks of
// the operating system.
#pragma once

#include "results.h"

namespace kine::bench {

// p99 and p99.99 against the median, of inverse calls back to back.
void MeasureTail(const Plan& plan, Results& results);

// A target out of reach against one that is solved. The line it prints goes to /dev/null.
void MeasureUnreachable(const Plan& plan, Results& results);

// Two threads on two cores, each solving all targets, against one. Skipped on a single core.
void MeasureThreads(const Plan& plan, Results& results);

// What an axis of a mechanical unit adds to a call.
void MeasureUnits(const Plan& plan, Results& results);

void CountSystemCalls(Results& results);

}  // namespace kine::bench
