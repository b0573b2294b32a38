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

/// `enable` is the name of the numbered option that turns on the third to fifth material.
constexpr IrisControls IrisControlsOf(const Panel& panel, int firstMaterial, std::string_view enable) {
  const PanelRoles& roles = panel.roles;
  IrisControls controls{{firstMaterial, roles.material2, roles.material3, roles.material4, roles.material5},
                        {panel.Option(enable, 3), panel.Option(enable, 4), panel.Option(enable, 5)},
                        {},
                        {},
                        panel.Option("Frames")};
  for (std::size_t i = 0; i < 5; ++i) {
    controls.styles[i] = panel.Option("IrisStyle", static_cast<int>(i) + 1);
    controls.sizes[i] = panel.Option("IrisSize", static_cast<int>(i) + 1);
  }
  return controls;
}

/// The parameter block: one moment of one transition.
struct IrisParams {
  int first = 0;  ///< material controls
  int second = 0;
  double phase = 0;  ///< 0 shows the first, towards 1 the second
  int size = 0;      ///< pixels
  int style = 0;     ///< IrisStyle
};

/// Both materials at the frame's size, mixed; nothing when one is missing.
PackedDib RenderIris(FrameComposer& composer, const IrisParams& params, int width, int height);

/// The sample: halfway through the first pair.
int TestIris(EffectContext& context, const IrisControls& controls, Renderer render) noexcept;

/// The cycle over the enabled materials and back to the first. Each transition begins at rest.
int BuildIris(EffectContext& context, const IrisControls& controls, Renderer render) noexcept;

}  // namespace glyphmotion
