// SPDX-License-Identifier: MIT
#include "controls/gradient_editor.h"

#include <algorithm>
#include <cstring>

namespace glyphmotion {
namespace {

struct NumberField {
  int control;
  std::size_t offset;
  std::int32_t least, most;
};
constexpr NumberField kNumbers[] = {
    {GradientControl::MidpointTrack, offsetof(GradientSpec, Midpoint), 1, 99},
    {GradientControl::Midpoint, offsetof(GradientSpec, Midpoint), 1, 99},
    {GradientControl::Rotation, offsetof(GradientSpec, Rotation), -360, 360},
    {GradientControl::EdgePad, offsetof(GradientSpec, EdgePad), 0, 45},
    {GradientControl::CenterX, offsetof(GradientSpec, CenterX), -50, 50},
    {GradientControl::CenterY, offsetof(GradientSpec, CenterY), -50, 50},
};

const NumberField* FieldOf(int control) {
  const auto found = std::find_if(std::begin(kNumbers), std::end(kNumbers),
                                  [&](const NumberField& f) { return f.control == control; });
  return found == std::end(kNumbers) ? nullptr : found;
}

}  // namespace

std::optional<std::int32_t> LimitGradientNumber(int control, std::int64_t value) noexcept {
  const NumberField* field = FieldOf(control);
  if (!field) return std::nullopt;
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, field->least, field->most));
}

bool SetGradientNumber(GradientSpec& gradient, int control, std::int64_t value) noexcept {
  const auto limited = LimitGradientNumber(control, value);
  if (!limited) return false;
  std::memcpy(reinterpret_cast<char*>(&gradient) + FieldOf(control)->offset, &*limited, sizeof(*limited));
  return true;
}

bool PressGradientButton(GradientSpec& gradient, int control) noexcept {
  switch (control) {
    case GradientControl::Linear:
      gradient.GradientType = 0;
      return true;
    case GradientControl::Conical:
      gradient.GradientType = 1;
      return true;
    case GradientControl::Elliptical:
      gradient.GradientType = 2;
      return true;
    case GradientControl::Rectangular:
      gradient.GradientType = 3;
      return true;
    case GradientControl::TwoColor:
    case GradientControl::MultiColor:
      gradient.TwoColor = control == GradientControl::TwoColor;
      return true;
    default:
      return false;
  }
}

std::optional<std::int32_t> GradientNumber(const GradientSpec& gradient, int control) noexcept {
  const NumberField* field = FieldOf(control);
  if (!field) return std::nullopt;
  std::int32_t value;
  std::memcpy(&value, reinterpret_cast<const char*>(&gradient) + field->offset, sizeof(value));
  return value;
}

bool IsGradientControlUsed(const GradientSpec& gradient, int control) noexcept {
  const bool linear = gradient.GradientType == 0 || gradient.GradientType > 3;
  switch (control) {
    case GradientControl::CenterX:
    case GradientControl::CenterY:
      return !linear;
    case GradientControl::Rotation:
      return linear || gradient.GradientType == 1;
    case GradientControl::Midpoint:
    case GradientControl::MidpointTrack:
      return gradient.TwoColor != 0;
    case GradientControl::StartColour:
    case GradientControl::EndColour:
      // The flat ends of a fountain take the two colours.
      return gradient.TwoColor != 0 || gradient.EdgePad > 0;
    case GradientControl::Fountain:
      return gradient.TwoColor == 0;
    default:
      return true;
  }
}

}  // namespace glyphmotion
