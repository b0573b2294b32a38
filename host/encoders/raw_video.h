// SPDX-License-Identifier: MIT
// Uncompressed video for other programs. Both forms have one rate: a frame that is shown longer is repeated.
#pragma once

#include "host/encoders/encoders.h"

namespace glyphmotion {

/// YUV4MPEG2: planes of luma and both chromas at full size (4:4:4), ITU-R BT.601, 16 to 235 and 16 to 240. Colours are
/// those of the frame on its background; there is no alpha.
Encoder OpenY4m(Output& output, const EncoderSettings& settings);

/// Red, green, blue, alpha (straight), rows top down, frame after frame without any header.
Encoder OpenRgba(Output& output, const EncoderSettings& settings);

}  // namespace glyphmotion
