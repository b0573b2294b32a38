// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/win32/windows_headers.h"

namespace glyphmotion {

/// Reads the first picture of a file in any format that the system supports, as a packed DIB in a new movable block
/// that the caller owns. Always 24 bits, composed on white: callers ignore alpha and would otherwise show the hidden
/// colours of transparent pixels. Null when it cannot be read, has a side above 8192 pixels, or when out of memory. COM
/// must be initialised on this thread.
HGLOBAL LoadPictureFile(const std::string& path);

}  // namespace glyphmotion
