// SPDX-License-Identifier: MIT
// Notes on where a run differs from what was requested, one sentence each: options that change nothing, missing fonts,
// frames that are too short.
#pragma once

#include <glyphmotion/render.h>

#include <string>
#include <vector>

#include "platform/dialog.h"

namespace glyphmotion {

/// Settings of the job that change nothing in a run of the dialog's current effect. Empty for a job that saves them to
/// a file.
std::vector<std::string> IdleSettings(const Dialog& dialog, const Job& job);

/// The family that replaces `asked`, which is empty when no font was named.
std::vector<std::string> FontNotes(const Dialog& dialog, const std::string& asked);

/// Counts consecutive frames of 10 ms or less.
class ShortFrames {
 public:
  explicit ShortFrames(const Job& job) : limit_(job.paletteFormat ? 1 : 10) {}
  void Add(int delay);
  /// A sentence when at least two such frames come in a row and half of all are such, otherwise empty: an effect may
  /// have short ones among longer by chance.
  std::string Note() const;

 private:
  int limit_;  // in the output's unit
  int run_ = 0, longest_ = 0, short_ = 0, frames_ = 0;
};

}  // namespace glyphmotion
