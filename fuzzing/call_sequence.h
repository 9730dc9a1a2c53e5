// A sequence of calls out of the bytes of one input: setup calls, good and bad, and calls of one family, in
// any order. Every call runs twice, and once more with a result over an input where the bytes ask for it;
// what comes out is held against the promises of KineDll.h.
#pragma once

#include <vector>

#include "call_runner.h"
#include "record_source.h"

namespace kine::fuzz {

class CallSequence
{
public:
    explicit CallSequence(unsigned family);

    // Inputs that are the same in every process, on the library as it is when it has just been loaded. No
    // call leads back to that state, so that this has to come first.
    void RunBeforeInitialisation();

    // One input, on a library with no arm, no mechanical units, and units disabled.
    void RunInput(const std::uint8_t* data, std::size_t size);

private:
    // Which setup calls are drawn.
    enum class Setup
    {
        kNone,
        kNoInitialisation,
        kAll
    };

    struct Probe
    {
        Call call;
        Outcome outcome;
    };

    void RunCalls(ByteSource& source, Setup setup);
    void Perform(const Call& call);
    void SetUpCell(ByteSource& source);
    void CompareOverlaid(const Call& call, const Outcome& apart);
    void RepeatProbes();

    std::vector<const Export*> setup_;
    std::vector<const Export*> family_;
    CallRunner runner_;
    RecordSource records_;
    Cell cell_;
    // Of every export the first reading call since the last setup call.
    std::vector<Probe> probes_;
    bool isTraced_;
};

}  // namespace kine::fuzz
