// SPDX-License-Identifier: MIT
#pragma once

#include "platform/memory.h"

namespace glyphmotion {

/// Inverts the word UNREGISTERED over the centre of a 24- or 32-bit frame (alpha stays). The image is changed in place;
/// false when it cannot be locked. Only runs whose host says that the stored registration is not valid are stamped.
bool StampFrame(BlockHandle image) noexcept;

}  // namespace glyphmotion
