// SPDX-License-Identifier: MIT
// A closed cycle of two to five materials, each opening into the next through an iris: what both iris effects share.
#pragma once

#include <array>

#include "effects/protocol.h"

namespace glyphmotion {

/// The controls of a cycle, by panel.
struct IrisControls {
  std::array<int, 5> materials;
  std::array<int, 3> enables;  ///< of the third to fifth material
  std::array<int, 5> styles, sizes;
  int frames;
};

/// The parameter block: one moment of one transition.
struct IrisParams {
  ScrollOffset scroll;  ///< always 0
  int first = 0;        ///< material controls
  int second = 0;
  double phase = 0;  ///< 0 shows the first, towards 1 the second
  int size = 0;      ///< pixels
  int style = 0;     ///< IrisStyle
};

/// Both materials at the frame's size, mixed; nothing when one is missing.
PackedDib RenderIris(FrameComposer& composer, const IrisParams& params, int width, int height);

/// The sample: the first pair, half way.
int TestIris(EffectContext& context, const IrisControls& controls, Renderer render) noexcept;

/// The cycle over the enabled materials and back to the first. Each transition begins at rest.
int BuildIris(EffectContext& context, const IrisControls& controls, Renderer render) noexcept;

}  // namespace glyphmotion
