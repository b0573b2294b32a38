// SPDX-License-Identifier: MIT
// How the program ends: its exit codes, and the one line on standard error.
#pragma once

#include <functional>
#include <string>

namespace glyphmotion {

/// Exit codes of the program.
enum ExitCode { kExitDone = 0, kExitFailed = 1, kExitUsage = 2 };

/// Prints one sentence as an error; line breaks in it become blanks. Returns `code`.
int Fail(const std::string& sentence, int code = kExitFailed);

/// Reports running out of memory, without allocating. Returns kExitFailed.
int FailForMemory() noexcept;

/// The exit code of a run that prints. When the reader closes the pipe (head), there is no message.
int PrintedWell(int code);

/// Runs `work` and returns its exit code; reports what it throws.
int EndingWell(const std::function<int()>& work);

/// For std::set_terminate: reports an uncaught std::bad_alloc and exits with kExitFailed; aborts on anything else.
[[noreturn]] void EndWithoutMemory() noexcept;

}  // namespace glyphmotion
