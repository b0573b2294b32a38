// SPDX-License-Identifier: MIT
// A bump that passes once along the text from left to right, for the effects that differ in what it does to the columns
// under it.
#pragma once

#include <span>
#include <vector>

#include "effects/column_warp.h"
#include "effects/protocol.h"

namespace glyphmotion {

/// What an effect makes of the bump.
struct BumpStyle {
  const PanelRoles& roles;
  int frames, length, strength;                    ///< controls; the length in percent of the frame's width
  bool addsHeight;                                 ///< the frame is a quarter of the strength higher
  int (*columnValue)(float height, int strength);  ///< of a column, for `warp`; the height is 0 to 1
  void (*warp)(const DibView& from, const DibView& to, int left, std::span<const int> values) noexcept;
};

/// The parameter block: the bump has covered position / total of its path; position -1: there is none.
struct PassingBump {
  int total = 0, position = 0;
  std::vector<float> profile;  ///< a height for each column of the frame, enlarged
  std::vector<int> values;     ///< and what the warp makes of it; some more columns, at rest, for the outline mask
  WarpedLayer fill, text, outline;
};

/// Renders the frame of the context's PassingBump.
PackedDib RenderBump(EffectContext& context, const BumpStyle& style);

/// The sample: the bump halfway.
int TestBump(EffectContext& context, Renderer render) noexcept;

/// `steps` frames at positions 0, 1, ... of half the number of frames, each with progress (position, steps); then the
/// frame at position `rest`, where the eye rests, without progress.
bool BuildBump(EffectContext& context, Renderer render, int total, int steps, int rest);

}  // namespace glyphmotion
