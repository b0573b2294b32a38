// SPDX-License-Identifier: MIT
#include "effects/effect_table.h"

#include <algorithm>
#include <string_view>

#include "platform/ascii.h"
#include "resources/templates.h"

namespace glyphmotion {
namespace {

#define GLYPHMOTION_EFFECT_POINTER(row) &row,
const EffectDescriptor* const kEffects[] = {GLYPHMOTION_EFFECTS(GLYPHMOTION_EFFECT_POINTER)};
#undef GLYPHMOTION_EFFECT_POINTER

char Plain(char c) { return c == '-' || c == '_' ? ' ' : ToLower(c); }

template <typename Predicate>
const ControlTemplate* Find(Predicate matches, const DialogTemplate** panel) {
  const auto findIn = [&](const DialogTemplate& in) -> const ControlTemplate* {
    const auto found = std::find_if(in.controls.begin(), in.controls.end(), matches);
    if (found == in.controls.end()) return nullptr;
    if (panel) *panel = &in;
    return &*found;
  };
  if (const ControlTemplate* control = findIn(kMainDialogTemplate)) return control;
  for (const EffectDescriptor* effect : kEffects) {
    if (const ControlTemplate* control = findIn(*effect->panel)) return control;
  }
  return nullptr;
}

}  // namespace

std::span<const EffectDescriptor* const> Effects() noexcept { return kEffects; }

const EffectDescriptor& EffectRow(int i) noexcept { return *kEffects[std::clamp(i, 0, kEffectCount - 1)]; }

int FindEffect(const std::string& name) noexcept {
  for (int i = 0; i < kEffectCount; ++i) {
    const std::string_view other = EffectRow(i).name;
    if (std::equal(name.begin(), name.end(), other.begin(), other.end(),
                   [](char a, char b) { return Plain(a) == Plain(b); })) {
      return i;
    }
  }
  return -1;
}

const ControlTemplate* FindControlOfKey(const char* key, const DialogTemplate** panel) noexcept {
  const std::string_view wanted = key;
  return Find([&](const ControlTemplate& control) { return control.key && wanted == control.key; }, panel);
}

const ControlTemplate* FindControlOfId(int id, const DialogTemplate** panel) noexcept {
  if (id <= 0) return nullptr;
  return Find([&](const ControlTemplate& control) { return control.id == id; }, panel);
}

}  // namespace glyphmotion
