// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/win32/windows_headers.h"

namespace glyphmotion {

/// Reads the first picture of a file in any format that the system knows, as a packed DIB in a new movable block that
/// the caller owns. Always 24 bits, laid on white where it is transparent: callers take the colours and drop the alpha,
/// and would see what a transparent pixel happens to hold. Null when it cannot be read, has a side above 8192 pixels,
/// or memory is out. COM has been started on this thread.
HGLOBAL LoadPictureFile(const std::string& path);

}  // namespace glyphmotion
