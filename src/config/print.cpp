// The print routine.
#include "config/print.h"

#include <cstdarg>
#include <cstdio>

namespace kine {

void Print(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    // A line that cannot be written is lost: no result depends on it.
    static_cast<void>(std::vprintf(format, arguments));
    va_end(arguments);
    static_cast<void>(std::fflush(stdout));
}

}  // namespace kine
