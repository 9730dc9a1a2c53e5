// The library's lines, apart from the data.
#include "library/printed_lines.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>

#include "KineDll.h"
#include "failure_text.h"

namespace kine_cli {
namespace {

// Runs in a child whose standard output is a pipe; what came through it. The child tells by its status.
template <typename Run>
std::string OutputOf(const Run& run, int expected = 0)
{
    std::array<int, 2> ends{};
    EXPECT_EQ(pipe(ends.data()), 0);
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);
        close(ends[1]);
        _exit(run());
    }
    close(ends[1]);
    std::string text;
    char byte = 0;
    while (read(ends[0], &byte, 1) == 1) text += byte;
    close(ends[0]);
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), expected);
    return text;
}

void Print(const char* text)
{
    std::fputs(text, stdout);
    std::fflush(stdout);
}

TEST(PrintedLines, what_is_printed_is_taken_and_data_pass_it_by)
{
    EXPECT_EQ(OutputOf([] {
                  int wrong = 0;
                  {
                      PrintedLines printed;
                      Print("one\ntwo\n");
                      wrong += write(printed.DataDescriptor(), "data\n", 5) != 5;
                      wrong += printed.Take() != "one\ntwo\n";
                      wrong += !printed.Take().empty();
                      Print("never taken\n");
                  }
                  Print("after\n");
                  return wrong;
              }),
              "data\nafter\n");
}

TEST(PrintedLines, a_line_of_the_library_is_taken)
{
    EXPECT_EQ(OutputOf([] {
                  PrintedLines printed;
                  int wrong = Kine_SetMechUnitGlobalCfg(4, 0, 1) != KINE_ERR_MECH_UNIT_COUNT;
                  wrong += printed.Take() != "IsLegalMechUnitAndExtAxisNum:mechUnitCount:4,3\n";
                  return wrong;
              }),
              "");
}

TEST(PrintedLines, more_than_the_pipe_holds_neither_stops_nor_leaks)
{
    EXPECT_EQ(OutputOf([] {
                  PrintedLines printed;
                  const std::string line(99, 'x');
                  for (int i = 0; i < 10000; ++i) Print((line + "\n").c_str());
                  const std::string taken = printed.Take();
                  return taken.size() >= 4096 && taken.size() < 1000000 && taken.starts_with(line) ? 0 : 1;
              }),
              "");
}

TEST(PrintedLines, a_child_with_a_pipe_of_its_own_keeps_its_lines)
{
    EXPECT_EQ(OutputOf([] {
                  PrintedLines printed;
                  const pid_t child = fork();
                  if (child == 0) {
                      printed.Renew();
                      Print("child\n");
                      _exit(printed.Take() == "child\n" ? 0 : 1);
                  }
                  int status = -1;
                  waitpid(child, &status, 0);
                  Print("parent\n");
                  return status == 0 && printed.Take() == "parent\n" ? 0 : 1;
              }),
              "");
}

TEST(PrintedLines, a_closed_standard_output_is_a_failure)
{
    EXPECT_EQ(OutputOf([] {
                  close(STDOUT_FILENO);
                  try {
                      PrintedLines printed;
                  } catch (const Failure& failure) {
                      return std::string(failure.what()) == "standard output: Bad file descriptor" ? 0 : 1;
                  }
                  return 2;
              }),
              "");
}

TEST(PrintedLines, the_pipe_does_not_take_the_place_of_closed_descriptors)
{
    EXPECT_EQ(OutputOf([] {
                  close(STDIN_FILENO);
                  close(STDERR_FILENO);
                  PrintedLines printed;
                  Print("line\n");
                  char byte = 0;
                  int wrong = read(STDIN_FILENO, &byte, 1) >= 0;
                  wrong += write(STDERR_FILENO, "x", 1) >= 0;
                  wrong += printed.Take() != "line\n";
                  return wrong;
              }),
              "");
}

TEST(AsUtf8, the_colon_of_the_code_page_becomes_one_of_UTF8)
{
    EXPECT_EQ(AsUtf8("a\xA3\xBA"
                     "b\xA3\xBA\n"),
              "a\xEF\xBC\x9A"
              "b\xEF\xBC\x9A\n");
    EXPECT_EQ(AsUtf8("plain\n"), "plain\n");
}

}  // namespace
}  // namespace kine_cli
