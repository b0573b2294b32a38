// SPDX-License-Identifier: MIT
// What a run does other than it was asked, in one sentence each: options that change nothing, a font that is not there,
// frames too short to be shown.
#pragma once

#include <glyphmotion/render.h>

#include <string>
#include <vector>

#include "platform/dialog.h"

namespace glyphmotion {

/// Settings of the job that change nothing in a run of the effect that the dialog shows. Nothing for a job that saves
/// them in a file.
std::vector<std::string> IdleSettings(const Dialog& dialog, const Job& job);

/// The family that takes the place of `asked`, and the characters of the dialog's text that no font has. `asked` is
/// empty when nobody named a font.
std::vector<std::string> FontNotes(const Dialog& dialog, const std::string& asked);

/// Counts the frames that follow one another in 10 ms or less.
class ShortFrames {
 public:
  explicit ShortFrames(const Job& job) : limit_(job.paletteFormat ? 1 : 10) {}
  void Add(int delay);
  /// A sentence when at least two such frames follow one another, otherwise empty.
  std::string Note() const;

 private:
  int limit_;  // in the output's unit
  int run_ = 0, longest_ = 0;
};

}  // namespace glyphmotion
