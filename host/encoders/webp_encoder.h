// SPDX-License-Identifier: MIT
// WebP pictures and animations.
#pragma once

#include "host/encoders/encoders.h"

namespace glyphmotion {

Encoder OpenWebp(Output& output, const EncoderSettings& settings);

}  // namespace glyphmotion
