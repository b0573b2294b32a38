// SPDX-License-Identifier: MIT
// A progress bar with the name of the stage, on the last line of the terminal.
#pragma once

#include <cstdint>
#include <string>

namespace glyphmotion {

/// True when standard error is a terminal.
bool ErrorsGoToTerminal();

class ProgressBar {
 public:
  explicit ProgressBar(bool shown) : shown_(shown) {}
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;
  ~ProgressBar() { Clear(); }

  /// Begins a stage, whose name is shown before the bar.
  void Stage(const std::string& name);
  /// Shows the progress; a total of 0 clears the bar.
  void At(std::int64_t position, std::int64_t total);
  void Clear();

 private:
  void Draw(int percent);

  bool shown_;
  int percent_ = -1;
  std::string stage_;
};

}  // namespace glyphmotion
