// SPDX-License-Identifier: MIT
// The names that fonts go by: families, families with a style, and the run's own file.
#pragma once

#include <optional>
#include <string>

#include "platform/portable/text_faces.h"

namespace glyphmotion {

/// All scalable fonts with their family names.
FontSet InstalledFonts();
/// All scalable faces, those with pictures too, with their names, styles, files and kinds.
FontSet InstalledFaces();
/// A pattern's n-th text of a field, or nothing.
std::string TextOf(const FcPattern* pattern, const char* field, int n = 0);
int NumberOf(const FcPattern* pattern, const char* field, int otherwise);
void AddFamily(FcPattern* pattern, const std::string& family);

/// True when the family is that of the run's own font file.
bool IsRunsOwnFont(const std::string& family);

/// What "DejaVu Sans Condensed Oblique" means; nothing for the name of a family and for an unknown name.
std::optional<StyledName> FindStyledName(const std::string& name);

}  // namespace glyphmotion
