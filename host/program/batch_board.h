// SPDX-License-Identifier: MIT
// What a batch says: a line for each result, and the time left.
#pragma once

#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>

#include "host/program/run_report.h"

namespace glyphmotion {

/// Prints from several threads.
class BatchBoard {
 public:
  struct Style {
    bool json = false, quiet = false, progress = false;
    std::uint64_t size = 0;  ///< bytes of all lines; 0: unknown, then no time left is shown
    int shards = 1;          ///< one of so many parts of the lines is run
  };
  explicit BatchBoard(const Style& style) : style_(style) {}
  BatchBoard(const BatchBoard&) = delete;
  ~BatchBoard();

  /// The result of line `number`, which has `bytes` bytes.
  void Done(const RunReport& report, long number, std::uint64_t bytes);
  /// A line whose output `file` has been made before.
  void Skipped(const std::string& file, long number);
  /// The lines read so far end here, in bytes.
  void Reached(std::uint64_t position);
  /// "3 made, 1 skipped, 2 failed in 1.5 s", unless quiet or JSON; only with the progress shown.
  void Summarise();

  bool Failed() const { return failed_ > 0; }
  /// The errno with which standard output refused a result, or 0. Nothing is printed there any more.
  int OutputTrouble() const;

 private:
  void Print(const std::string& line);
  void PrintError(const char* kind, long number, const std::string& sentence);
  void Draw();
  void Clear();

  const Style style_;
  mutable std::mutex mutex_;
  std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now(), drawn_{};
  long made_ = 0, skipped_ = 0, failed_ = 0;
  std::uint64_t position_ = 0, ran_ = 0;  // bytes of lines: read, run
  bool shown_ = false;
  int trouble_ = 0;
};

}  // namespace glyphmotion
