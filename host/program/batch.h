// SPDX-License-Identifier: MIT
// glyphmotion batch JOBS.jsonl: many runs in one process, several at once.
//
// Each line is a job of its own: a wrong one fails alone. Results are printed as they come, with the line's number;
// with one job at a time that is the order of the lines. Memory is that of the jobs that run, and some bytes a line:
// names of outputs are remembered, because two lines that write the same file are refused.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/options/arguments.h"
#include "host/program/run_report.h"

namespace glyphmotion {

/// True when the words after the program's name ask for a batch.
bool IsBatch(const std::vector<std::string>& words);

struct BatchOutcome {
  std::string error;  ///< one sentence about the batch as a whole; lines report theirs themselves
  int code = 0;       ///< done, failed when a line did, bad usage, or 128 plus a signal's number
};

/// Runs the jobs by calling `run`, from several threads. Prints results to standard output, errors of lines and the
/// progress to standard error. An interrupt ends the current jobs without their outputs.
BatchOutcome RunBatch(const std::vector<std::string>& words, const Catalogue& catalogue,
                      const std::function<RunReport(const Arguments&)>& run);

}  // namespace glyphmotion
