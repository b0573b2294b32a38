// SPDX-License-Identifier: MIT
// What the tests of several effects ask: every option at both ends of its range, and the layers of a frame one by one.
#pragma once

#include <cstring>
#include <set>
#include <string>
#include <utility>

#include "controls/read_controls.h"
#include "effects/build_harness.h"
#include "effects/effect_table.h"
#include "resources/templates.h"

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
        add(control, {0, 1});
        break;
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

/// The first end at which a run of few frames fails, leaves blocks behind or has no frame; empty when none does. The
/// extremes are tried in palette and alpha runs by turns.
inline std::string FirstBadEnd(const std::string& effect, const DialogTemplate& panel, const Settings& few) {
  bool alpha = false;
  for (const Job::Setting& end : OptionEnds(panel)) {
    Settings settings = few;
    settings.push_back(end);
    if ((alpha = !alpha)) settings.emplace_back("62", "1");
    const Built built = BuildWith(effect, settings);
    const bool done = built.result.status == RenderStatus::Done && !built.frames.empty();
    if (!done || built.result.blocks || built.result.locks)
      return end.first + "=" + end.second + ": " + built.result.message;
  }
  return "";
}

/// Black letters on white and nothing else, so that a frame is its text mask, seen as a negative.
inline Settings OnlyLetters(const std::string& effect, Settings more = {}) {
  const PanelRoles& roles = *EffectRow(FindEffect(effect)).roles;
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

/// Columns of two frames of one size that differ, from the first to the last; {-1, -1} for equal frames.
inline std::pair<int, int> DifferingColumns(const BuiltFrame& a, const BuiltFrame& b) {
  std::pair<int, int> columns{-1, -1};
  for (int x = 0; x < a.width; ++x) {
    for (int y = 0; y < a.height; ++y) {
      if (PixelOf(a, x, y) == PixelOf(b, x, y)) continue;
      if (columns.first < 0) columns.first = x;
      columns.second = x;
    }
  }
  return columns;
}

}  // namespace glyphmotion::test
