// SPDX-License-Identifier: MIT
// Random pictures and palettes for the differential tests of the colour engine.
#pragma once

#include <random>
#include <string>

#include "image/frame_list.h"
#include "image/packed_dib.h"

namespace glyphmotion {

using Dice = std::mt19937;

inline int Roll(Dice& dice, int from, int to) { return std::uniform_int_distribution<int>(from, to)(dice); }

/// `spread` limits the channels to multiples of 256 / spread, so that few colours, and runs of them, occur.
inline Palette RandomPalette(Dice& dice, int spread = 256) {
  Palette palette{};
  const auto channel = [&] { return static_cast<std::uint8_t>(Roll(dice, 0, spread - 1) * 255 / (spread - 1)); };
  for (auto& entry : palette) entry = {channel(), channel(), channel()};
  return palette;
}

/// A picture of one of the five depths with runs of up to `run` equal pixels; the padding bytes stay zero.
inline PackedDib RandomImage(Dice& dice, int width, int height, int bits, int spread = 256, int run = 4) {
  const Palette palette = RandomPalette(dice, spread);
  PackedDib dib = BlankDib(width, height, &palette, bits);
  const DibView view(dib);
  std::uint32_t value = 0;
  for (int y = 0; y < height; ++y) {
    for (int x = 0, left = 0; x < width; ++x) {
      if (left-- == 0) {
        left = Roll(dice, 0, run - 1);
        value = bits > 8 ? ColourOf(palette[static_cast<std::size_t>(Roll(dice, 0, 255))]) : dice();
        if (bits > 8 && Roll(dice, 0, 1)) value ^= static_cast<std::uint32_t>(Roll(dice, 0, 7)) * 0x010101;
      }
      view.SetPixel(x, y, value);
    }
  }
  return dib;
}

/// Where two bitmaps differ in a byte, or in size; empty when they are the same, block for block.
inline std::string Difference(const PackedDib& a, const PackedDib& b) {
  if (!a || !b) return !a && !b ? "" : "only one of them is there";
  if (BlockSize(a.Handle()) != BlockSize(b.Handle())) return "sizes differ";
  const LockedBlock<std::uint8_t> left(a.Handle()), right(b.Handle());
  for (std::size_t i = 0; i < BlockSize(a.Handle()); ++i) {
    if (left.get()[i] != right.get()[i]) return "byte " + std::to_string(i) + " differs";
  }
  return "";
}

struct TestFrames : OwnedFrames {
  void Append(PackedDib image, int delay = 0) {
    FrameRecord record;
    record.image = image.Release();
    record.delay = delay;
    AppendFrame(list, record);
  }
};

}  // namespace glyphmotion
