// SPDX-License-Identifier: MIT
#include "shell/sample.h"

#include "effects/effect_table.h"

namespace glyphmotion {

PackedDib RenderSample(Dialog& dialog) noexcept {
  const int selection = GetSelection(dialog, ControlId::Effect);
  if (selection < 0) return {};
  RunCache cache;
  EffectContext context;
  context.dialog = &dialog;
  context.preview = true;
  context.cache = &cache;
  EffectRow(selection).testFunction(context);
  return PackedDib(context.result);
}

Colour SampleSurround(const Dialog& dialog) noexcept {
  return EffectRow(GetSelection(dialog, ControlId::Effect)).transparentColourFunction(dialog, 0);
}

}  // namespace glyphmotion
