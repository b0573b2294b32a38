// SPDX-License-Identifier: MIT
// The heap of the process.
#pragma once

namespace glyphmotion {

/// For a short-lived program with many large blocks: keeps freed memory for the next block instead of returning it to
/// the system, which would have to clear every page again. Affects the whole process, so a library must not call it.
void KeepFreedMemory() noexcept;

}  // namespace glyphmotion
