// SPDX-License-Identifier: MIT
#include "host/program/progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace glyphmotion {

bool ErrorsGoToTerminal() { return isatty(STDERR_FILENO) != 0; }

void ProgressBar::Stage(const std::string& name) {
  stage_ = name;
  Draw(0);
}

void ProgressBar::At(std::int64_t position, std::int64_t total) {
  if (total <= 0) return Clear();
  const int percent = static_cast<int>(std::clamp<std::int64_t>(position * 100 / total, 0, 100));
  if (percent != percent_) Draw(percent);
}

void ProgressBar::Draw(int percent) {
  if (!shown_) return;
  constexpr int kCells = 30;
  percent_ = percent;
  const std::string done(static_cast<std::size_t>(percent * kCells / 100), '#');
  std::fprintf(stderr, "\r%-16s [%-*s] %3d %%", stage_.c_str(), kCells, done.c_str(), percent);
  std::fflush(stderr);
}

void ProgressBar::Clear() {
  if (shown_ && percent_ >= 0) std::fputs("\r\033[K", stderr);
  percent_ = -1;
}

}  // namespace glyphmotion
