#include "rows/progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <string>

#include "text/numbers.h"

namespace kine_cli {
namespace {

constexpr std::chrono::milliseconds kPause(200);
constexpr std::size_t kBarWidth = 30;

}  // namespace

Progress::Progress(bool wanted, std::uint64_t size)
    : shown_(wanted && isatty(STDERR_FILENO) == 1), size_(size)
{}

Progress::~Progress() { Clear(); }

void Progress::Clear()
{
    if (!onScreen_) return;
    std::fputs("\r\x1b[K", stderr);
    std::fflush(stderr);
    onScreen_ = false;
}

void Progress::Add(std::uint64_t rows, std::uint64_t bytes)
{
    rows_ += rows;
    bytes_ += bytes;
    if (!shown_) return;
    const Clock::time_point now = Clock::now();
    if (now - last_ < kPause) return;
    last_ = now;
    std::string line = "\r\x1b[K";
    if (size_ > 0) {
        const double part = std::min(1.0, static_cast<double>(bytes_) / static_cast<double>(size_));
        const auto full = static_cast<std::size_t>(part * static_cast<double>(kBarWidth));
        line += "[" + std::string(full, '#') + std::string(kBarWidth - full, '.') + "] " +
                Fixed(part * 100.0, 0) + " %, ";
    }
    const double seconds = std::chrono::duration<double>(now - start_).count();
    line += std::to_string(rows_) + " rows, " + Fixed(static_cast<double>(rows_) / seconds / 1000.0, 0) +
            " thousand/s";
    std::fputs(line.c_str(), stderr);
    std::fflush(stderr);
    onScreen_ = true;
}

}  // namespace kine_cli
