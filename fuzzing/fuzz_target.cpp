// The entry points of libFuzzer, for the family of exports that the build names.
#include <unistd.h>

#include <cstddef>
#include <cstdint>

#include "call_sequence.h"

namespace {

kine::fuzz::CallSequence& Sequence()
{
    static kine::fuzz::CallSequence sequence(kine::fuzz::KINE_FUZZ_FAMILY);
    return sequence;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    // libFuzzer does not watch the time yet.
    constexpr unsigned kSeconds = 60;
    ::alarm(kSeconds);
    Sequence().RunBeforeInitialisation();
    ::alarm(0);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Sequence().RunInput(data, size);
    return 0;
}
