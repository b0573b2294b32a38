// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "image/packed_dib.h"

namespace glyphmotion {

/// Reads a PNG or WebP picture (its first frame) as a new 24-bit bitmap on white, owned by the caller. Empty, with one
/// sentence in `error`, when the file cannot be read, is not a picture, or has a side above 8192 pixels.
PackedDib LoadPicture(const std::string& path, std::string& error);

}  // namespace glyphmotion
