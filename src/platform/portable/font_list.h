// SPDX-License-Identifier: MIT
// The machine's fonts: which there are, and which of them a family, a style or a character comes to. Fontconfig's on a
// desktop; a folder's on a machine without it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/portable/text_faces.h"

namespace glyphmotion {

/// Prepares the list, which all threads share.
void OpenFontList();
bool HasFonts();

/// True when the family is that of the run's own font file.
bool IsRunsOwnFont(const std::string& family);

/// The face that fits a selection best and can be opened; with a character, one that has it. Null when there is none.
Face* Match(Selection& selection, char32_t character = 0);
/// The first face of those that fit the selection, best first, which draws all of the text; null: none.
Face* FirstListed(Selection& selection, std::u32string_view text);
/// The same among the faces with coloured glyphs.
Face* FirstListedEmoji(Selection& selection, std::u32string_view text);

struct ListedFace {
  FaceKey key;
  std::string family, style;
  bool variable = false;
};
/// All scalable faces, those with pictures too.
std::vector<ListedFace> ListedFaces();

}  // namespace glyphmotion
