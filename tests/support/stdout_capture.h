// What a piece of code prints to standard output, byte for byte, down to the file descriptor.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace kine::test {

template <class Code>
std::string PrintedBy(Code&& code)
{
    ::testing::internal::CaptureStdout();
    std::forward<Code>(code)();
    return ::testing::internal::GetCapturedStdout();
}

}  // namespace kine::test
