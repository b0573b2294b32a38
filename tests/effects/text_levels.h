// SPDX-License-Identifier: MIT
// Plain twins of effects that paint inside standing letters: what the letters cover is seen through Simple, and the
// twin's fill is blended with that.
#pragma once

#include <gtest/gtest.h>

#include "effects/build_harness.h"
#include "image/colour.h"
#include "image/packed_dib.h"
#include "materials/material.h"
#include "materials/material_text.h"

namespace glyphmotion::test {

struct Levels {
  int width = 0, height = 0;
  std::vector<int> values;
  bool Holds(int x, int y) const { return x >= 0 && y >= 0 && x < width && y < height; }
  /// 255 outside.
  int At(int x, int y) const { return Holds(x, y) ? values[static_cast<std::size_t>(y * width + x)] : 255; }
};

/// The level of the text (or of its outline) at every pixel of a frame that has a margin by its Pad alone. The settings
/// are those of the dialog and Simple's shadow offset and direction.
inline Levels LevelsOf(Settings settings, bool outline) {
  for (const char* key : {"22", "Style000Soft", "Style000ShadowEnable"}) settings.emplace_back(key, "0");
  settings.emplace_back("Style000OutlineEnable", outline ? "1" : "0");
  settings.emplace_back("Style000OutlineColor", "16777215");
  settings.emplace_back("Style000FillOpacity", outline ? "0" : "255");
  settings.emplace_back("100", "#ffffff");
  settings.emplace_back("104", "#000000");
  const Built built = BuildWith("simple", settings);
  Levels levels;
  if (built.frames.empty()) return levels;
  const BuiltFrame& frame = built.frames[0];
  levels.width = frame.width;
  levels.height = frame.height;
  for (int y = 0; y < frame.height; ++y) {
    for (int x = 0; x < frame.width; ++x) levels.values.push_back(static_cast<int>(PixelOf(frame, x, y) & 0xFF));
  }
  return levels;
}

/// The pixels of a fill as the program's own argument names it.
inline PackedDib FillOf(const std::string& text, int width, int height) {
  Material material;
  DefaultMaterial(material, 0);
  std::string error;
  EXPECT_TRUE(ParseMaterial(text, material, error)) << error;
  return MaterialToBitmap(material, width, height);
}

/// Where a frame is not the fill seen through the letters on a background: "x,y", or empty.
inline std::string FirstDifference(const BuiltFrame& frame, const Levels& letters, const PackedDib& fill,
                                   Colour background) {
  const DibView view(fill);
  if (frame.width != letters.width || frame.height != letters.height || !view) return "size";
  for (int y = 0; y < frame.height; ++y) {
    for (int x = 0; x < frame.width; ++x) {
      if (PixelOf(frame, x, y) != Blend(background, view.GetPixel(x, y), letters.At(x, y)))
        return std::to_string(x) + "," + std::to_string(y);
    }
  }
  return "";
}

}  // namespace glyphmotion::test
