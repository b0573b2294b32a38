// SPDX-License-Identifier: MIT
#include "host/encoders/avif.h"

namespace glyphmotion {

const char* const kAvifLacks = "libavif";

Encoder OpenAvif(Output&, const EncoderSettings&) { return {}; }

}  // namespace glyphmotion
