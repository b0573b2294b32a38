// SPDX-License-Identifier: MIT
// AVIF, where the build found libavif.
#pragma once

#include "host/encoders/encoders.h"

namespace glyphmotion {

/// Null, or the library without which this program was built.
extern const char* const kAvifLacks;

/// A picture or an image sequence, lossless without a quality. Players loop as they like: the format, as this library
/// writes it, holds no number of plays.
Encoder OpenAvif(Output& output, const EncoderSettings& settings);

}  // namespace glyphmotion
