// SPDX-License-Identifier: MIT
// A progress bar with the name of the stage, on the terminal's last line.
#pragma once

#include <cstdint>
#include <string>

namespace glyphmotion {

/// True when standard error is a terminal, where a bar makes sense.
bool ErrorsGoToTerminal();

class ProgressBar {
 public:
  explicit ProgressBar(bool shown) : shown_(shown) {}
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;
  ~ProgressBar() { Clear(); }

  /// A stage begins; its name stands before the bar.
  void Stage(const std::string& name);
  /// position of total; 0 of 0 clears the bar.
  void At(std::int64_t position, std::int64_t total);
  void Clear();

 private:
  void Draw(int percent);

  bool shown_;
  int percent_ = -1;
  std::string stage_;
};

}  // namespace glyphmotion
