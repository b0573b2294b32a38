// SPDX-License-Identifier: MIT
// What the program does before its first line: signals that end it, and standard streams that exist.
#pragma once

#include <atomic>

namespace glyphmotion {

/// After this, Ctrl-C, SIGTERM and SIGHUP ask the run to end in order, with the message and the exit code of an
/// interrupted run. What has not ended a second later, or at a second signal, ends at once, wherever it is. A file that
/// grows past its limit and a reader that goes away are plain errors.
void CatchInterrupts();

/// 128 and the number of the signal that asked the program to end; 0 while none did.
int InterruptedCode() noexcept;

/// True once such a signal has come: what a run's long loops look at.
const std::atomic<bool>& InterruptRequest() noexcept;

/// Opens /dev/null for each of the descriptors 0 to 2 that is closed, so that no file of the run gets its number and
/// what is meant for the terminal.
void OpenStandardStreams() noexcept;

}  // namespace glyphmotion
