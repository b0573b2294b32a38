// SPDX-License-Identifier: MIT
// The gradient dialog (9995) without its window: which control sets which field, and within what limits.
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
constexpr int LabelOffset = 100;  ///< added to a control's id to give that of the text beside it
}  // namespace GradientControl

/// Private message of the dialog: b is the new midpoint, posted only when it differs from the field.
constexpr std::uint32_t kMessageSetMidpoint = 0x4C8;

#pragma pack(push, 1)
/// What the dialog edits, as one block: the two neighbours in a material's record.
struct GradientBlock {
  GradientSpec gradient;
  FountainSpec fountain;
};
#pragma pack(pop)
static_assert(sizeof(GradientBlock) == 625);

/// The field a number control sets, after its limits; nothing for other controls. 0 and empty midpoints count as 1.
std::optional<std::int32_t> LimitGradientNumber(int control, std::int64_t value) noexcept;

/// Puts a number control's value, limited, into its field. False when the control sets no number.
bool SetGradientNumber(GradientSpec& gradient, int control, std::int64_t value) noexcept;

/// A press of a type button or of one of the two radios. False for other controls.
bool PressGradientButton(GradientSpec& gradient, int control) noexcept;

/// What the number controls show for a gradient; nothing for controls without a number.
std::optional<std::int32_t> GradientNumber(const GradientSpec& gradient, int control) noexcept;

/// Whether a control means anything for the shape and the choice of colours: the centre is none of the linear shape's
/// business, rotation none of the rings'.
bool IsGradientControlUsed(const GradientSpec& gradient, int control) noexcept;

/// The type button of the gradient's shape.
int TypeButtonOf(const GradientSpec& gradient) noexcept;

/// A place of a picture, in pixels.
struct PicturePlace {
  int x = 0, y = 0;
};
/// Where a picture of this size shows the gradient's centre; of a linear one, a place towards its start.
PicturePlace HandleOfGradient(const GradientSpec& gradient, int width, int height) noexcept;

/// What number control `control` would have to hold for the centre to lie at this place of a picture, or for a linear
/// gradient to start from there; within the control's limits. Nothing for other controls.
std::optional<std::int32_t> GradientNumberAt(const GradientSpec& gradient, int control, int width, int height,
                                             PicturePlace place) noexcept;

}  // namespace glyphmotion
