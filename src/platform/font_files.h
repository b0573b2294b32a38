// SPDX-License-Identifier: MIT
// Font files: what the machine has, and those that a run brings itself.
#pragma once

#include <string>
#include <vector>

#include "platform/text_engine.h"
#include "platform/text_run.h"

namespace glyphmotion {

/// One axis of a variable font.
struct FontAxis {
  std::string tag;  ///< four characters
  double minimum = 0, standard = 0, maximum = 0;
};

struct FontFaceInfo {
  std::string family, style, file;
  int index = 0;               ///< in a collection
  std::vector<FontAxis> axes;  ///< of a variable font
};

/// Every face of the machine, by family, style and file. A variable font comes once, with its axes, and once for each
/// of its named instances.
std::vector<FontFaceInfo> FontFaces();

/// Reads `name`, a path or PATH#N for the N-th face (from 0) of a collection. False with one sentence in `error` when
/// there is no such face that can be drawn.
bool OpenFontFile(const std::string& name, FontFile& file, std::string& error);

/// Why the run's axes cannot be had of this font; empty when they can.
std::string AxesTrouble(const FontRequest& font);

/// The sentence on the run's missing characters, with the Debian packages that have them where they are known; empty
/// when nothing is missing.
std::string MissingNote();

}  // namespace glyphmotion
