// SPDX-License-Identifier: MIT
#include "host/encoders/webm.h"

namespace glyphmotion {

const char* const kWebmLacks = "libvpx";

Encoder OpenWebm(Output&, const EncoderSettings&) { return {}; }

}  // namespace glyphmotion
