// SPDX-License-Identifier: MIT
#include <array>
#include <string_view>

#include "resources/templates.h"

namespace glyphmotion {
namespace {

// In the order of the effect list.
constexpr std::array<const DialogTemplate*, 21> kPanels = {&kBackgroundHyperspacePanel,
                                                           &kBackgroundIrisPanel,
                                                           &kBreakerPanel,
                                                           &kCubistPanel,
                                                           &kElasticPanel,
                                                           &kEventHorizonPanel,
                                                           &kFusePanel,
                                                           &kGumdropsPanel,
                                                           &kHyperspacePanel,
                                                           &kIrisPanel,
                                                           &kLaserPanel,
                                                           &kNebulaPanel,
                                                           &kPhasersOnStunPanel,
                                                           &kPinchPanel,
                                                           &kPulsePanel,
                                                           &kRipplePanel,
                                                           &kRadarPanel,
                                                           &kSimplePanel,
                                                           &kSingularityPanel,
                                                           &kVortexPanel,
                                                           &kWhiteNoisePanel};

template <typename Predicate>
const ControlTemplate* Find(Predicate matches, const DialogTemplate** panel) {
  const auto findIn = [&](const DialogTemplate& in) -> const ControlTemplate* {
    for (const ControlTemplate& control : in.controls) {
      if (!matches(control)) continue;
      if (panel) *panel = &in;
      return &control;
    }
    return nullptr;
  };
  if (const ControlTemplate* control = findIn(kMainDialogTemplate)) return control;
  for (const DialogTemplate* in : kPanels) {
    if (const ControlTemplate* control = findIn(*in)) return control;
  }
  return nullptr;
}

}  // namespace

std::span<const DialogTemplate* const> PanelTemplates() noexcept { return kPanels; }

const ControlTemplate* FindControlOfKey(const char* key, const DialogTemplate** panel) noexcept {
  const std::string_view wanted = key;
  return Find([&](const ControlTemplate& control) { return control.key && wanted == control.key; }, panel);
}

const ControlTemplate* FindControlOfId(int id, const DialogTemplate** panel) noexcept {
  if (id <= 0) return nullptr;
  return Find([&](const ControlTemplate& control) { return control.id == id; }, panel);
}

}  // namespace glyphmotion
