// SPDX-License-Identifier: MIT
// The names that fonts go by: families, and families with a style. For the files of the font list on Fontconfig.
#pragma once

#include <fontconfig/fontconfig.h>

#include <memory>
#include <optional>
#include <string>

#include "platform/portable/font_list.h"

namespace glyphmotion {

struct DestroyPattern {
  void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using Pattern = std::unique_ptr<FcPattern, DestroyPattern>;

struct DestroyCharSet {
  void operator()(FcCharSet* set) const { FcCharSetDestroy(set); }
};
using CharSet = std::unique_ptr<FcCharSet, DestroyCharSet>;

struct DestroyFontSet {
  void operator()(FcFontSet* set) const { FcFontSetDestroy(set); }
};
using FontSet = std::unique_ptr<FcFontSet, DestroyFontSet>;

/// All scalable fonts with their family names.
FontSet InstalledFonts();
/// All scalable faces, those with pictures too, with their names, styles, files and kinds.
FontSet InstalledFaces();
/// A pattern's n-th text of a field, or nothing.
std::string TextOf(const FcPattern* pattern, const char* field, int n = 0);
int NumberOf(const FcPattern* pattern, const char* field, int otherwise);
void AddFamily(FcPattern* pattern, const std::string& family);

/// What "DejaVu Sans Condensed Oblique" means; nothing for the name of a family and for an unknown name.
std::optional<StyledName> FindStyledName(const std::string& name);

}  // namespace glyphmotion
