// SPDX-License-Identifier: MIT
#pragma once

#include "host/decoders.h"

namespace glyphmotion::testing {

/// The pictures of an animation or of one picture, with delays in milliseconds. Nothing where libavif is missing.
Shown DecodeAvif(const Bytes& file);

}  // namespace glyphmotion::testing
