// SPDX-License-Identifier: MIT
// The heap of the process.
#pragma once

#include <cstddef>

namespace glyphmotion {

/// For a short-lived program with many large blocks: keeps freed memory for the next block instead of returning it to
/// the system, which would have to clear every page again, and begins with some memory in large pages. Affects the
/// whole process, so a library must not call it.
void KeepFreedMemory() noexcept;

/// Asks for large pages for memory that nothing has been written to: hundreds of megabytes are then filled and freed in
/// a fifth of the time. Does nothing for less than 32 MB, nor where the system decides by itself.
void PreferLargePages(void* memory, std::size_t bytes) noexcept;

}  // namespace glyphmotion
