// The lines go to standard output as the caller's own text does: where that is a text stream, as it is from the start
// of a program on Windows, a line ends in CR LF; where the caller has made it binary, in LF alone.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <io.h>

#include <cstdio>
#include <string>

#include "KineDll.h"

namespace {

// What reaches the other end of a pipe in a mode of standard output, byte by byte.
std::string BytesOfARefusedCall(int mode)
{
    int ends[2] = {};
    static_cast<void>(std::fflush(stdout));
    const int kept = _dup(_fileno(stdout));
    EXPECT_EQ(_pipe(ends, 4096, _O_BINARY), 0);
    _dup2(ends[1], _fileno(stdout));
    _setmode(_fileno(stdout), mode);
    static_cast<void>(Kine_SetMechUnitGlobalCfg(4, 2, 1));
    _dup2(kept, _fileno(stdout));
    _close(kept);
    _close(ends[1]);
    char text[256] = {};
    const int length = _read(ends[0], text, sizeof text);
    _close(ends[0]);
    return std::string(text, static_cast<std::size_t>(length < 0 ? 0 : length));
}

constexpr const char* kLine = "IsLegalMechUnitAndExtAxisNum:mechUnitCount:4,3";

}  // namespace

TEST(stdout_of_a_program, is_a_text_stream)
{
    const int mode = _setmode(_fileno(stdout), _O_TEXT);
    EXPECT_EQ(mode, _O_TEXT);
}

TEST(line, on_a_text_stream_ends_in_cr_lf)
{
    EXPECT_EQ(BytesOfARefusedCall(_O_TEXT), std::string(kLine) + "\r\n");
}

TEST(line, on_a_binary_stream_ends_in_lf)
{
    EXPECT_EQ(BytesOfARefusedCall(_O_BINARY), std::string(kLine) + "\n");
}
