// SPDX-License-Identifier: MIT
// The gradient dialog (9995) without its window: which control sets which field, and its limits.
#pragma once

#include <cstdint>
#include <optional>

#include "materials/material.h"

namespace glyphmotion {

namespace GradientControl {
constexpr int Ok = 1, Cancel = 2, Help = 9;
constexpr int Linear = 101, Elliptical = 102, Rectangular = 103, Conical = 104;
constexpr int Preview = 105, EndColour = 106, StartColour = 107;
constexpr int MidpointTrack = 108, Midpoint = 110, Rotation = 111, EdgePad = 112, CenterX = 113, CenterY = 114;
constexpr int TwoColor = 118, MultiColor = 119, Fountain = 120, Hint = 121;
constexpr int LabelOffset = 100;  ///< added to a control's id: the id of its label
}  // namespace GradientControl

/// Private message of the dialog: b is the new midpoint, posted only when it differs from the field.
constexpr std::uint32_t kMessageSetMidpoint = 0x4C8;

#pragma pack(push, 1)
/// The data that the dialog edits, as one block: the two adjacent parts of a material's record.
struct GradientBlock {
  GradientSpec gradient;
  FountainSpec fountain;
};
#pragma pack(pop)
static_assert(sizeof(GradientBlock) == 625);

/// The field a number control sets, after its limits; nothing for other controls. 0 and empty midpoints count as 1.
std::optional<std::int32_t> LimitGradientNumber(int control, std::int64_t value) noexcept;

/// Stores a number control's value, clamped, in its field. False when the control sets no number.
bool SetGradientNumber(GradientSpec& gradient, int control, std::int64_t value) noexcept;

/// Handles a press of a type button or of one of the two radios. False for other controls.
bool PressGradientButton(GradientSpec& gradient, int control) noexcept;

/// The number that a control shows for a gradient; nothing for controls without a number.
std::optional<std::int32_t> GradientNumber(const GradientSpec& gradient, int control) noexcept;

/// Whether a control applies to the shape and the choice of colours: the linear shape has no centre, rings have no
/// rotation.
bool IsGradientControlUsed(const GradientSpec& gradient, int control) noexcept;

/// The type button of the gradient's shape.
int TypeButtonOf(const GradientSpec& gradient) noexcept;

/// A position in a picture, in pixels.
struct PicturePlace {
  int x = 0, y = 0;
};
/// The position of the gradient's centre in a picture of this size; for a linear one, a position towards its start.
PicturePlace HandleOfGradient(const GradientSpec& gradient, int width, int height) noexcept;

/// The value of number control `control` that puts the centre at this position of a picture, or makes a linear gradient
/// start there; clamped to the control's limits. Nothing for other controls.
std::optional<std::int32_t> GradientNumberAt(const GradientSpec& gradient, int control, int width, int height,
                                             PicturePlace place) noexcept;

}  // namespace glyphmotion
