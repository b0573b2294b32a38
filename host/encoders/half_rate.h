// SPDX-License-Identifier: MIT
// Leaves out every second frame, and shows the others for twice as long.
#pragma once

#include "host/encoders/encoders.h"

namespace glyphmotion {

/// `encoder` with the first, third, fifth... of the images that it is given; each gets the delay of the one after it
/// too. Images that look through to those before them must not be among them.
Encoder AtHalfRate(Encoder encoder);

}  // namespace glyphmotion
