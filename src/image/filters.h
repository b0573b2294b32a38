// SPDX-License-Identifier: MIT
// Two filters: a Gaussian blur, which softens shadows and some masks, and a two-pass resampler.
#pragma once

#include "image/packed_dib.h"

namespace glyphmotion {

/// Gaussian blur of sigma = softness / 10 pixels with a kernel of 41 taps, sampled at thirds of a step and binned.
/// Bitmaps below 9 bits are one channel (a mask blurs by value), others three bytes per pixel. Lines shorter than 41
/// pixels are not blurred in that direction; borders are normalised by the weights inside the line.
///
/// Returns a new bitmap of the same size and depth, or nothing. The source is only read.
PackedDib Blur(const PackedDib& source, int softness) noexcept;

/// Resamples to a size with separable filters: Mitchell-Netravali (B = C = 1/3) when the area grows, otherwise Lanczos
/// with three lobes. Depths 8 (as values), 24 and 32; other depths give zeros. The same size gives a duplicate. Method:
/// the two-pass filtered zoom of Schumacher, "General Filtered Image Rescaling", Graphics Gems III.
///
/// Returns a new bitmap of the source's depth and palette, or nothing.
PackedDib ResampleToSize(const PackedDib& source, int width, int height) noexcept;

/// New sides are side * percent / 100 + 0.5, truncated.
PackedDib ResampleByPercent(const PackedDib& source, int xPercent, int yPercent) noexcept;

}  // namespace glyphmotion
