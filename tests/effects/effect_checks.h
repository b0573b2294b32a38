// SPDX-License-Identifier: MIT
// What the tests of several effects ask: the layers of a frame one by one.
#pragma once

#include <cstring>
#include <string>
#include <utility>

#include "effects/effect_table.h"
#include "effects/option_ends.h"

namespace glyphmotion::test {

/// Black letters on white and nothing else, so that a frame is its text mask, seen as a negative.
inline Settings OnlyLetters(const std::string& effect, Settings more = {}) {
  const PanelRoles& roles = EffectRow(FindEffect(effect)).panel->roles;
  more.emplace_back(std::to_string(roles.fill), "#000000");
  for (int id : {roles.shadowEnable, roles.outlineEnable, roles.softness})
    if (id) more.emplace_back(std::to_string(id), "0");
  return more;
}

/// The bitmap of a frame.
inline PackedDib DibOf(const BuiltFrame& frame) {
  PackedDib dib(AllocateBlock(frame.dib.size()));
  const LockedBlock<std::uint8_t> bytes(dib.Handle());
  if (bytes) std::memcpy(bytes.get(), frame.dib.data(), frame.dib.size());
  return dib;
}

/// The text mask of a frame of OnlyLetters.
inline PackedDib LettersOf(const BuiltFrame& frame) {
  PackedDib mask = BlankMask(frame.width, frame.height);
  const DibView view(mask);
  for (int y = 0; y < frame.height; ++y)
    for (int x = 0; x < frame.width; ++x) view.SetPixel(x, y, 255 - (PixelOf(frame, x, y) & 0xFF));
  return mask;
}

/// The text mask where nothing moves.
inline PackedDib RestingLetters(Settings more = {}) {
  more.emplace_back("22", "0");
  return LettersOf(BuildWith("simple", OnlyLetters("simple", std::move(more))).frames.at(0));
}

}  // namespace glyphmotion::test
