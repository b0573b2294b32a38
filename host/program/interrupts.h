// SPDX-License-Identifier: MIT
// Start-up of the program: the signals that end it, and standard streams that are always open.
#pragma once

#include <atomic>

namespace glyphmotion {

/// From here on, Ctrl-C, SIGTERM and SIGHUP ask the run to end cleanly, with the message and the exit code of an
/// interrupted run. A run that has not ended a second later, or at a second signal, is ended at once. A file that grows
/// past its limit and a closed pipe are plain errors.
void CatchInterrupts();

/// After such a signal: the run has this long from now on to end.
void AllowToEnd(unsigned seconds) noexcept;

/// 128 plus the number of the signal that asked the program to end; 0 when there was none.
int InterruptedCode() noexcept;

/// True once such a signal has arrived; long loops of a run poll it.
const std::atomic<bool>& InterruptRequest() noexcept;

/// Opens /dev/null for each closed descriptor from 0 to 2. Otherwise a file of the run could get that number, and with
/// it text meant for the terminal.
void OpenStandardStreams() noexcept;

}  // namespace glyphmotion
