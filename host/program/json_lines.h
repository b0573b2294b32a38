// SPDX-License-Identifier: MIT
// JSON of the command line: the jobs of a batch, and results for other programs. All text is one line without its end.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "host/program/lists.h"
#include "host/program/run_report.h"

namespace glyphmotion {

/// One line of a batch: an object whose keys are the long options without their dashes, and "text".
struct JobLine {
  std::vector<std::string> words;   ///< the same as words of a command line
  std::vector<std::string> writes;  ///< the files and folders that the job writes, its output first
};

/// Reads a line. What it writes lies in `folder`, unless that is empty. Throws UsageError for what is not an object of
/// options, and for names that lead out of the folder.
JobLine ReadJobLine(const std::string& line, const std::string& folder);

/// {"file":,"format":,"width":,"height":,"frames":,"duration_ms":,"bytes":,"colors":,"ms":} or {"error":}; with "notes"
/// if there are any. `line` above 0 is the number of the batch's line and comes first.
std::string JsonOf(const RunReport& report, long line = 0);

/// {"line":,"file":,"skipped":true}
std::string JsonOfSkipped(const std::string& file, long line);

/// An array of objects, one a row.
std::string JsonOf(const ListTable& table);

/// {"error":}
std::string JsonOfError(const std::string& error);

}  // namespace glyphmotion
