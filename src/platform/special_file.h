// SPDX-License-Identifier: MIT
// Terminals, pipes and devices, which are written to as they are. For `why` see platform/files.h.
#pragma once

#include <string>
#include <string_view>

namespace glyphmotion {

/// Whether the path exists and is neither a regular file nor a folder.
bool IsSpecialFile(const std::string& path);

/// Writes to a file that exists. A pipe without a reader is refused; a slow reader blocks the write.
bool WriteSpecialFile(const std::string& path, std::string_view bytes, std::string& why);

}  // namespace glyphmotion
