// Prints a digest of what more than 100,000 calls of all exports leave behind: every code, every byte of
// every record, every printed line. Builds that print the same digest compute the same bits.
//
//     digest [--threads N] [--verbose]
//
// N threads share the calls that only read the configuration; the digest does not depend on N. Verbose gives
// the digest of each export as well. The number itself means nothing: the C library's sines are part of it.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "digest/tally.h"
#include "support/export_inputs.h"
#include "support/quiet_stdout.h"

namespace kine::test {
namespace {

constexpr std::uint64_t kSeed = 7001;
constexpr std::size_t kInputsPerCell = 100;
constexpr int kSpoiledCells = 200;
constexpr std::size_t kInputsPerSpoiledCell = 6;

class Run
{
public:
    explicit Run(std::size_t threads) : threads_(threads) {}

    Tally Perform()
    {
        SeededRandom random(kSeed);
        const std::vector<TrialCell> cells = TrialCells();
        // Before any setup.
        Read(DrawInputs(random, cells.front(), kInputsPerCell));
        for (const TrialCell& cell : cells) {
            SetUp(cell);
            Read(DrawInputs(random, cell, kInputsPerCell));
        }
        for (int i = 0; i < kSpoiledCells; ++i) {
            const TrialCell& cell = cells[random.Below(cells.size())];
            SetUp(cell);
            SpoilSetup(random, cell);
            Read(DrawInputs(random, cell, kInputsPerSpoiledCell));
        }
        return tally_;
    }

private:
    void Call(std::size_t place, const CallInputs& in)
    {
        CallResults results;
        MakeCall(kExportCalls[place], in, results);
        tally_.Add(place, results);
    }

    void SetUp(const TrialCell& cell)
    {
        SetUpCell(cell, [this](std::size_t place, const CallInputs& in) { Call(place, in); });
    }

    // A few setup calls with records that may be bad.
    void SpoilSetup(SeededRandom& random, const TrialCell& cell)
    {
        for (int i = random.Whole(1, 5); i > 0; --i) {
            const std::size_t place = random.Below(kSetupCount);
            Call(place, SpoiledInputs(random, cell));
        }
    }

    // Every reading call on every input.
    void Read(const std::vector<CallInputs>& inputs)
    {
        const std::vector<ReadingCall> calls = ReadingCalls(inputs);
        std::vector<CallResults> results(calls.size());
        const auto work = [&](std::size_t first) {
            for (std::size_t i = first; i < calls.size(); i += threads_) MakeCall(calls[i], results[i]);
        };
        std::vector<std::thread> others;
        for (std::size_t i = 1; i < threads_; ++i) others.emplace_back(work, i);
        work(0);
        for (std::thread& thread : others) thread.join();
        for (std::size_t i = 0; i < calls.size(); ++i) tally_.Add(calls[i].place, results[i]);
    }

    std::size_t threads_;
    Tally tally_;
};

// The lines of a file, each with its end.
std::vector<std::string> LinesOf(std::FILE* file)
{
    std::vector<std::string> lines(1);
    std::rewind(file);
    for (int byte = std::fgetc(file); byte != EOF; byte = std::fgetc(file)) {
        lines.back().push_back(static_cast<char>(byte));
        if (byte == '\n') lines.emplace_back();
    }
    if (lines.back().empty()) lines.pop_back();
    return lines;
}

Tally Perform(std::size_t threads)
{
    std::FILE* printed = std::tmpfile();
    if (printed == nullptr) throw std::runtime_error("no temporary file");
    Tally tally;
    {
        const StdoutTo file(fileno(printed));
        tally = Run(threads).Perform();
    }
    tally.AddLines(LinesOf(printed));
    static_cast<void>(std::fclose(printed));
    return tally;
}

void Show(const Tally& tally, bool isVerbose)
{
    const auto number = [](std::uint64_t value) { return static_cast<unsigned long long>(value); };
    if (isVerbose) {
        for (std::size_t i = 0; i < kExportCount; ++i) {
            const Tally::Entry& entry = tally.Of(i);
            std::printf("%-34s %016llx %6llu calls %6llu successes\n", kExportCalls[i].name,
                        number(entry.digest.Value()), number(entry.calls), number(entry.successes));
        }
        std::printf("%-34s %016llx %6llu lines\n", "printed", number(tally.OfLines().Value()),
                    number(tally.Lines()));
    }
    std::printf("digest %016llx of %llu calls with %zu different codes\n", number(tally.Total()),
                number(tally.Calls()), tally.Codes());
}

}  // namespace
}  // namespace kine::test

int main(int argc, char** argv)
{
    std::size_t threads = 1;
    bool isVerbose = false;
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--verbose") == 0) {
            isVerbose = true;
        } else if (std::strcmp(argv[i], "--threads") == 0 && i + 1 < argc) {
            threads = std::strtoul(argv[++i], nullptr, 10);
        } else {
            threads = 0;
        }
    }
    if (threads == 0) {
        static_cast<void>(std::fputs("usage: digest [--threads N] [--verbose]\n", stderr));
        return EXIT_FAILURE;
    }
    kine::test::Show(kine::test::Perform(threads), isVerbose);
    return EXIT_SUCCESS;
}
