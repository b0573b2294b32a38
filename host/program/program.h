// SPDX-License-Identifier: MIT
// The command-line program: turns arguments into a job, and the job's images into a file.
#pragma once

#include <atomic>
#include <optional>
#include <string>
#include <vector>

#include "glyphmotion/render.h"
#include "host/options/arguments.h"
#include "host/program/interrupts.h"
#include "host/program/outcome.h"
#include "host/program/run_report.h"

namespace glyphmotion {

/// Runs the program with the words after its name. Prints to standard output (lists, help) and standard error. Returns
/// an ExitCode, or 128 plus the number of the signal that interrupted the run.
int RunProgram(const std::vector<std::string>& words);

/// The same without the subcommands: options and a text.
int RunLine(const std::vector<std::string>& words);

/// The same with the arguments of main(); also reports running out of memory during its own start.
int RunMain(int argc, char** argv) noexcept;

/// main(): also prepares the process, its streams and its signals.
int Main(int argc, char** argv) noexcept;

/// The job that the words of a command line stand for; nothing, with one sentence, when they are wrong.
std::optional<Job> JobOf(const std::vector<std::string>& words, std::string& error);

/// Runs the words of a command line with an output, without a word on standard error. Empty when done, else one
/// sentence; there is no file once `stop` is true.
std::string RunWords(const std::vector<std::string>& words, const std::atomic<bool>& stop = InterruptRequest());

/// What a line may name, and its text from standard input.
Catalogue ProgramCatalogue();

/// Everything between the arguments of a line and its report; prints nothing but the progress bar, and writes nothing
/// once `stop` is true.
RunReport Perform(const Arguments& arguments, const std::atomic<bool>& stop = InterruptRequest());

}  // namespace glyphmotion
