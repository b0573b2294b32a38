// SPDX-License-Identifier: MIT
// WebM with VP9, where the build found libvpx.
#pragma once

#include "host/encoders/encoders.h"

namespace glyphmotion {

/// Null, or the library without which this program was built.
extern const char* const kWebmLacks;

/// A video of 4:2:0 pictures (ITU-R BT.601), each for as long as it is shown. Alpha, if a picture has any, is a second
/// stream beside the first.
Encoder OpenWebm(Output& output, const EncoderSettings& settings);

}  // namespace glyphmotion
