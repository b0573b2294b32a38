// SPDX-License-Identifier: MIT
// Glyphs and vector shapes by one dispatcher over one record: the whole set, of which the effects use a part.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "image/packed_dib.h"
#include "image/surface.h"
#include "platform/text_engine.h"

namespace glyphmotion {

enum class DrawOperation : int {
  StartUp = 1,
  ShutDown = 2,
  Line = 3,
  Ellipse = 4,
  RoundedRectangle = 5,
  Polygon = 6,
  Text = 7,
  GradientRectangle = 8
};

enum class TextMode : int {
  Measure = 0,      ///< the box, less a blank's width for characters above 32
  Direct = 1,       ///< one-bit, drawn on `target` at (x, y)
  Glyph = 2,        ///< the glyph at the origin of a fresh bitmap of its box, on black
  PathOutline = 3,  ///< the glyph's outline stroked
  PathFill = 4      ///< the glyph's outline filled, at 88 percent of the size
};

struct DrawOpRecord {
  DrawOperation op = DrawOperation::StartUp;
  // Text
  TextMode textMode = TextMode::Measure;
  FontRequest font;
  char32_t text = 0;  ///< the one character; 0 draws and measures nothing
  bool antialias = false;
  Colour colour = 0;         ///< brush, or first colour of a gradient
  std::uint8_t level = 255;  ///< alpha of a direct draw
  DibView* target = nullptr;
  int x = 0, y = 0;
  int width = 0, height = 0;  ///< out: the measured box, truncated
  // Shapes: drawn on black in a bitmap 8 pixels larger than the bounds
  Rect bounds;
  int penWidth = 0;
  Colour fill = kNoColour, outline = kNoColour;  ///< kNoColour leaves that part out
  int cornerRadius = 0;
  std::span<const Point> points;
  int gradientShape = 0;  ///< 0 linear, 1 elliptical, 2 rectangular
  Colour secondColour = 0;
};

struct DrawOpResult {
  bool done = false;  ///< start-up, shut-down, measure and direct draw
  PackedDib bitmap;   ///< 24 bits, for the others; empty on failure
  bool outOfMemory = false;
};

/// Does what `record.op` says; an unknown operation gives neither.
DrawOpResult DrawOp(DrawOpRecord& record) noexcept;

}  // namespace glyphmotion
