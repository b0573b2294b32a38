// SPDX-License-Identifier: MIT
// Shaped text as a row of clusters, through the system's own shaping.
#pragma once

#include <memory>
#include <vector>

#include "platform/text_engine.h"
#include "platform/win32/windows_headers.h"

#include <usp10.h>

namespace glyphmotion {

struct Cluster {
  LOGFONTW font{};
  SCRIPT_ANALYSIS analysis{};
  std::vector<WORD> glyphs;
  std::vector<int> advances;
  std::vector<GOFFSET> offsets;
  int advance = 0;       ///< pixels
  int em = 0, cell = 0;  ///< of the line's font, pixels
  int rise = 0;          ///< rows from the cell's top to that of a face that lends its glyphs
  bool joined = false, blank = false;
};

/// GDI's terms for a request.
LOGFONTW LogFontOf(const FontRequest& request);

/// The cluster of a code of the run, or null for other codes.
std::shared_ptr<const Cluster> FindCluster(char32_t code);

GlyphBox BoxOf(const Cluster& cluster);
bool DrawCluster(const Cluster& cluster, bool antialias, GlyphBitmap& glyph);

}  // namespace glyphmotion
