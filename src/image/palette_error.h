// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

#include "image/colour.h"
#include "image/frame_list.h"

namespace glyphmotion {

/// The mean squared error of a channel, over all pixels of 24-bit frames, when each gets the nearest of the palette's
/// first `count` entries. Nothing when out of memory, when an image is malformed, or when the run was asked to end.
std::optional<double> PaletteError(const FrameList& frames, const Palette& palette, int count) noexcept;

/// The mean squared error of 45 dB, which is hardly seen.
constexpr double kErrorOf45Decibels = 2.0563;

}  // namespace glyphmotion
