// What a call that must fail says.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "failure.h"

namespace kine_cli {

// The message of the Failure that the call ends in, with the exit code expected; empty when it does not fail.
template <typename Call>
std::string FailureText(const Call& call, ExitCode code = ExitCode::kBadFile)
{
    try {
        call();
    } catch (const Failure& failure) {
        EXPECT_EQ(static_cast<int>(failure.code), static_cast<int>(code)) << failure.what();
        return failure.what();
    }
    return "";
}

}  // namespace kine_cli
