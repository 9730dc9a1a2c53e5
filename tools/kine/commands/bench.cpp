// kine bench: how fast the library answers on this cell, on this machine.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <chrono>
#include <nlohmann/json.hpp>

#include "commands/commands.h"
#include "library/codes.h"
#include "measure/latencies.h"
#include "measure/reachable.h"
#include "text/numbers.h"

namespace kine_cli {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kTargets = 1024;  // few enough to stay in the cache, as one path does
constexpr std::size_t kChunk = 64;      // calls between two looks at the clock where the rate is measured
constexpr std::size_t kClockReadings = 20'000;
constexpr double kNanosecondsPerMicrosecond = 1e3;

struct BenchOptions
{
    CellOptions cell;
    double seconds = 2.0;
    std::uint64_t seed = 1;
    FormatOptions format;
};

struct Measurement
{
    const char* call = nullptr;
    std::uint64_t calls = 0;
    double seconds = 0.0;
    Latencies latencies;

    [[nodiscard]] double Rate() const { return static_cast<double>(calls) / seconds; }
};

std::int64_t NanosecondsSince(Clock::time_point start)
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now() - start).count();
}

// What one look at the clock costs: the median, since some looks are interrupted.
std::int64_t ClockOverhead()
{
    Latencies readings;
    for (std::size_t i = 0; i < kClockReadings; ++i) readings.Add(NanosecondsSince(Clock::now()));
    return readings.Percentile(0.5);
}

// Half of the time for the rate, in chunks, half for the latency, call by call.
template <typename Call>
Measurement Measure(const char* name, const std::vector<ReachableTarget>& targets, double seconds,
                    const Call& call)
{
    const auto half = std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds / 2));
    Measurement measured;
    measured.call = name;
    std::size_t next = 0;
    KineResult codes = KINE_OK;
    const auto callNext = [&] {
        codes |= call(targets[next]);
        next = next + 1 < targets.size() ? next + 1 : 0;
    };
    for (std::size_t i = 0; i < targets.size(); ++i) callNext();

    const Clock::time_point start = Clock::now();
    Clock::duration spent{};
    do {
        for (std::size_t i = 0; i < kChunk; ++i) callNext();
        measured.calls += kChunk;
        spent = Clock::now() - start;
    } while (spent < half);
    measured.seconds = std::chrono::duration<double>(spent).count();

    const Clock::time_point end = Clock::now() + half;
    do {
        for (std::size_t i = 0; i < kChunk; ++i) {
            const Clock::time_point before = Clock::now();
            callNext();
            measured.latencies.Add(NanosecondsSince(before));
        }
    } while (Clock::now() < end);
    if (codes != KINE_OK) throw Failure(ExitCode::kRefused, std::string(name) + " does not answer as before");
    return measured;
}

std::vector<Measurement> MeasureAll(const CellRecords& records, const std::vector<ReachableTarget>& targets,
                                    double seconds)
{
    constexpr int kCalls = 4;
    const double each = seconds / kCalls;
    std::vector<Measurement> all;
    const auto measure = [&](const char* name, const auto& call) {
        all.push_back(Measure(name, targets, each, call));
    };
    measure("Kine_JointToWobjPos", [&](const ReachableTarget& target) {
        KinePose pose;
        return Kine_JointToWobjPos(&target.joints, &records.tool, &records.wobj, &records.load, &pose);
    });
    measure("Kine_WobjPosToJoint", [&](const ReachableTarget& target) {
        KineJoint joints;
        return Kine_WobjPosToJoint(&target.inWobj, &records.tool, &records.wobj, &records.load, &joints);
    });
    measure("Kine_JointToWorldPos", [&](const ReachableTarget& target) {
        KinePose pose;
        return Kine_JointToWorldPos(&target.joints, &records.tool, &records.wobj, &records.load, &pose);
    });
    measure("Kine_GetArmType", [&](const ReachableTarget& target) {
        KineArmConfig config;
        return Kine_GetArmType(&target.joints, &config);
    });
    return all;
}

struct PercentileColumn
{
    const char* key;    // in JSON
    const char* title;  // in the table
    double share;
};
constexpr std::array<PercentileColumn, 5> kPercentiles = {{{"median_us", "median", 0.5},
                                                           {"p90_us", "p90", 0.9},
                                                           {"p99_us", "p99", 0.99},
                                                           {"p99_9_us", "p99.9", 0.999},
                                                           {"worst_us", "worst", 1.0}}};

double Microseconds(std::int64_t nanoseconds)
{
    return static_cast<double>(nanoseconds) / kNanosecondsPerMicrosecond;
}

std::string Report(const BenchOptions& options, const ReadyCell& ready, const ReachableTargets& found,
                   std::int64_t overhead, std::vector<Measurement>& all)
{
    std::string out = (ready.cell.name.empty() ? ready.cell.file : ready.cell.name) + ": " +
                      std::to_string(found.targets.size()) + " targets from " + std::to_string(found.tried) +
                      " random joint sets, seed " + std::to_string(options.seed) + "\n\n";
    out += "call                        calls/s";
    for (const PercentileColumn& column : kPercentiles) {
        const std::string title = column.title;
        out += std::string(11 - title.size(), ' ') + title;
    }
    out += "\n";
    for (Measurement& measured : all) {
        std::string line = measured.call;
        line.resize(22, ' ');
        AppendFixed(line, measured.Rate(), 13, 0);
        for (const PercentileColumn& column : kPercentiles)
            AppendFixed(line, Microseconds(measured.latencies.Percentile(column.share)), 11, 3);
        out += line + "\n";
    }
    return out + "\nLatencies in microseconds, of single calls; each holds one look at the clock, " +
           Fixed(Microseconds(overhead), 3) + ".\n";
}

std::string JsonReport(const BenchOptions& options, const ReadyCell& ready, const ReachableTargets& found,
                       std::int64_t overhead, std::vector<Measurement>& all)
{
    nlohmann::ordered_json report = {{"file", ready.cell.file},
                                     {"cell", ready.cell.name},
                                     {"seed", options.seed},
                                     {"seconds", options.seconds},
                                     {"targets", found.targets.size()},
                                     {"joint_sets_tried", found.tried},
                                     {"joint_sets_singular", found.singular},
                                     {"clock_overhead_us", Microseconds(overhead)},
                                     {"calls", nlohmann::ordered_json::array()}};
    for (Measurement& measured : all) {
        nlohmann::ordered_json row = {{"call", measured.call},
                                      {"calls", measured.calls},
                                      {"calls_per_second", measured.Rate()},
                                      {"timed_calls", measured.latencies.Count()}};
        for (const PercentileColumn& column : kPercentiles)
            row[column.key] = Microseconds(measured.latencies.Percentile(column.share));
        report["calls"].push_back(row);
    }
    return report.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
}

[[noreturn]] void FailUnreachable(const BenchOptions& options, const ReachableTargets& found)
{
    std::string text =
        options.cell.file + ": none of " + std::to_string(found.tried) +
        " random joint sets is a target to measure with; singular: " + std::to_string(found.singular);
    for (const auto& [code, count] : found.refused)
        text += "\n  " + std::to_string(count) + " times " + InWords(code);
    throw Failure(ExitCode::kRefused, text);
}

ExitCode RunBench(const BenchOptions& options, PrintedLines& printed)
{
    const ReadyCell ready(options.cell, printed);
    const ReachableTargets found = FindReachable(ready, options.seed, kTargets, printed);
    if (found.targets.empty()) FailUnreachable(options, found);
    const std::int64_t overhead = ClockOverhead();
    std::vector<Measurement> all = MeasureAll(ready.records, found.targets, options.seconds);
    const auto report = options.format.json ? &JsonReport : &Report;
    WriteAll(printed.DataDescriptor(), report(options, ready, found, overhead, all));
    return ExitCode::kDone;
}

}  // namespace

void AddBench(CLI::App& program, Action& action)
{
    const auto options = std::make_shared<BenchOptions>();
    CLI::App& command = *program.add_subcommand("bench", "Calls per second and latency on this cell");
    options->cell.AddTo(command);
    command.add_option("--seconds", options->seconds, "How long to measure, 0.01 to 3600")
        ->capture_default_str()
        ->type_name("S")
        ->check(CLI::Range(0.01, 3600.0));
    command.add_option("--seed", options->seed, "Seed of the random targets")
        ->capture_default_str()
        ->type_name("N")
        ->check(CLI::NonNegativeNumber);
    options->format.AddTo(command, false);
    command.footer(
        "The targets are random joints within the limits, away from singular places, and\n"
        "their poses. One process and one thread; a busy machine spoils the figures.\n\n"
        "Examples:\n"
        "  kine bench puma.json\n"
        "  kine bench puma.json --tool gripper --seconds 10 --json");
    SetAction(command, action, options, RunBench);
}

}  // namespace kine_cli
