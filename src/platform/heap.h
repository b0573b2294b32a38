// SPDX-License-Identifier: MIT
// The heap of the process.
#pragma once

namespace glyphmotion {

/// For a program that makes many large blocks and soon ends: freed memory is kept for the next block instead of going
/// back to the system, which would have to clear it page by page when it is asked for again. Changes the whole process:
/// not for a library to call.
void KeepFreedMemory() noexcept;

}  // namespace glyphmotion
