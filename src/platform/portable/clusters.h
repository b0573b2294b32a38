// SPDX-License-Identifier: MIT
// Shaped text as a row of clusters, each of which is measured and drawn as a character is.
#pragma once

#include "platform/portable/glyph_drawing.h"

namespace glyphmotion {

/// One glyph of a cluster. It names its face by key, so that any thread can draw it.
struct ClusterGlyph {
  const FaceKey* face = nullptr;
  FT_UInt code = 0;
  double em = 0;
  bool embolden = false, slant = false;
  double x = 0, y = 0;  ///< pixels: of its origin, from the line's beginning and from the cell's top
};

struct Cluster {
  std::vector<ClusterGlyph> glyphs;
  int start = 0, advance = 0;  ///< whole pixels from the line's beginning; glyphs lie between pixels
  int cellHeight = 0;
  double em = 0;  ///< of the line's font
  bool joinsLeft = false, joinsRight = false;
  bool blank = false, picture = false;
};

/// One text that was shaped.
struct ClusterRow {
  std::string key;  ///< all that it depends on
  std::vector<std::unique_ptr<FaceKey>> faces;
  std::vector<Cluster> clusters;
  ShapedText text;
  char32_t first = 0;  ///< code of the first cluster
};

/// The cluster of a code of the run, or null for other codes.
std::shared_ptr<const Cluster> FindCluster(char32_t code);
/// The run's row of that key, if it has been shaped; its text is copied.
bool FindRow(const std::string& key, ShapedText& text);
/// Gives the clusters their codes and keeps them; `text` holds indices from 0 until then.
ShapedText KeepRow(ClusterRow row);

GlyphBox BoxOf(const Cluster& cluster);
/// `glyph` covers what there is to see, wherever that lies; joined neighbours are drawn with it, so that there is no
/// seam, and cut off where their own columns begin.
bool DrawCluster(const Cluster& cluster, bool antialias, double penWidth, GlyphBitmap& glyph);

}  // namespace glyphmotion
