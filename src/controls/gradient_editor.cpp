// SPDX-License-Identifier: MIT
#include "controls/gradient_editor.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "image/angles.h"

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

bool IsLinear(const GradientSpec& gradient) { return gradient.GradientType == 0 || gradient.GradientType > 3; }

// The fraction of the picture for each percent of the centre, to the right and downwards. The rings shrink from a box
// that is larger than the picture by the square root of two; only the conical shape's centre moves up as its number
// grows.
struct CentreStep {
  double x, y;
};
CentreStep CentreStepOf(const GradientSpec& gradient, int width, int height) {
  if (gradient.GradientType == 1) return {width / 100.0, -height / 100.0};
  return {width * 1.41421356 / 100.0, height * 1.41421356 / 100.0};
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
  const bool linear = IsLinear(gradient);
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
      // The flat ends of a fountain use the two colours.
      return gradient.TwoColor != 0 || gradient.EdgePad > 0;
    case GradientControl::Fountain:
      return gradient.TwoColor == 0;
    default:
      return true;
  }
}

int TypeButtonOf(const GradientSpec& gradient) noexcept {
  constexpr int kButtons[] = {GradientControl::Linear, GradientControl::Conical, GradientControl::Elliptical,
                              GradientControl::Rectangular};
  return kButtons[IsLinear(gradient) ? 0 : gradient.GradientType];
}

PicturePlace HandleOfGradient(const GradientSpec& gradient, int width, int height) noexcept {
  double x = 0, y = 0;
  if (IsLinear(gradient)) {
    // At 0 degrees the start is at the upper edge; it rotates clockwise.
    const double angle = gradient.Rotation / kDegreesPerRadian, reach = std::min(width, height) * 0.375;
    x = std::sin(angle) * reach;
    y = -std::cos(angle) * reach;
  } else {
    const CentreStep step = CentreStepOf(gradient, width, height);
    x = gradient.CenterX * step.x;
    y = gradient.CenterY * step.y;
  }
  return {static_cast<int>(std::lround(width / 2.0 + x)), static_cast<int>(std::lround(height / 2.0 + y))};
}

std::optional<std::int32_t> GradientNumberAt(const GradientSpec& gradient, int control, int width, int height,
                                             PicturePlace place) noexcept {
  const double x = place.x - width / 2.0, y = place.y - height / 2.0;
  const CentreStep step = CentreStepOf(gradient, std::max(width, 1), std::max(height, 1));
  switch (control) {
    case GradientControl::Rotation:
      return LimitGradientNumber(control, std::lround(std::atan2(x, -y) * kDegreesPerRadian));
    case GradientControl::CenterX:
      return LimitGradientNumber(control, std::lround(x / step.x));
    case GradientControl::CenterY:
      return LimitGradientNumber(control, std::lround(y / step.y));
    default:
      return std::nullopt;
  }
}

}  // namespace glyphmotion
