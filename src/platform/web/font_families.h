// SPDX-License-Identifier: MIT
// The fonts of a folder, for the files of the font list without Fontconfig.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/portable/font_list.h"

namespace glyphmotion {

struct FolderFace {
  ListedFace listed;
  int weight = 400;  ///< 100 to 900
  bool italic = false, colour = false;
};

/// All faces of the folder, in the order of its index, then of the files' names. This thread's, read again by
/// OpenFontList.
const std::vector<FolderFace>& FolderFaces();

/// The family that a name means: a family of the folder, one with the same metrics, or a generic one's. Empty: none.
std::string FamilyOf(const std::string& name);

/// The face that "Liberation Sans Bold Italic" names by family and style; null: none.
const FolderFace* FindStyledFace(const std::string& name);

}  // namespace glyphmotion
