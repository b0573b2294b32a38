// SPDX-License-Identifier: MIT
// What a run asks of its text beyond what the dialog can say, and what the text engine keeps for that run.
#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace glyphmotion {

enum class TextDirection { Auto, LeftToRight, RightToLeft };
enum class TextAlign { Start, Left, Centre, Right, Justify };

struct TextOptions {
  TextDirection direction = TextDirection::Auto;  ///< Auto: of the line's first strong character
  TextAlign align = TextAlign::Start;             ///< Start: left, or right for lines from right to left
  int lineSpace = 100;                            ///< percent of the cell height from line to line
  bool colourEmoji = true;                        ///< false: emoji are silhouettes in the fill
};

/// One axis of a variable font at a value: wght=650.
struct AxisValue {
  std::string tag;  ///< four characters
  double value = 0;
  friend bool operator==(const AxisValue&, const AxisValue&) = default;
};

/// A font file that the run brings itself. It goes by the family that it names.
struct FontFile {
  std::string path, family;
  int index = 0;  ///< of the face in a collection
  friend bool operator==(const FontFile&, const FontFile&) = default;
};

struct ClusterStore;  // the engine's own

struct TextRun {
  TextOptions options;
  FontFile fontFile;            ///< no path: none
  std::vector<AxisValue> axes;  ///< for the face of the run's family
  std::set<char32_t> missing;   ///< characters that no font has
  std::shared_ptr<ClusterStore> clusters;
};

/// Adds to the run's missing characters.
void NoteMissing(char32_t character);

/// The state of the run that this thread works for.
TextRun& CurrentTextRun();

}  // namespace glyphmotion
