// SPDX-License-Identifier: MIT
// Every option of an effect's panel at both ends of its range, and what frames show.
#pragma once

#include <string>
#include <utility>

#include "controls/read_controls.h"
#include "effects/build_harness.h"
#include "effects/effect_table.h"

namespace glyphmotion::test {

/// One setting a job: both ends of each number, both states of each check box, both ends of each picker. Numbers of
/// frames are left out: schedules have tests of their own.
inline Settings OptionEnds(const DialogTemplate& panel) {
  Settings ends;
  const auto add = [&](const ControlTemplate& control, std::initializer_list<int> values) {
    const std::string key = control.key ? control.key : std::to_string(control.id);
    if (key.ends_with("Frames")) return;
    for (int value : values) ends.emplace_back(key, std::to_string(value));
  };
  for (const ControlTemplate& control : panel.controls) {
    switch (control.kind) {
      case ControlKind::NumberEdit:
        for (const ControlTemplate& upDown : panel.controls) {
          if (upDown.id != control.id + kUpDownOffset) continue;
          const NumberRange range = ParseRange(upDown.caption);
          add(control, {range.minimum, range.maximum});
        }
        break;
      case ControlKind::Check:
      case ControlKind::ScrollTwo:
        add(control, {0, 1});
        break;
      case ControlKind::ScrollFour:
        add(control, {0, 3});
        break;
      case ControlKind::ShadowDirection:
        add(control, {0, 7});
        break;
      default:
        break;
    }
  }
  return ends;
}

/// How many pixels of a frame have a colour.
inline int PixelsOf(const BuiltFrame& frame, std::uint32_t colour) {
  int pixels = 0;
  for (int y = 0; y < frame.height; ++y) {
    for (int x = 0; x < frame.width; ++x) pixels += PixelOf(frame, x, y) == colour;
  }
  return pixels;
}

}  // namespace glyphmotion::test
