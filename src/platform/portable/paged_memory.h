// SPDX-License-Identifier: MIT
// Memory that a nameless temporary file backs: while nobody uses it, its bytes need no room in the process.
#pragma once

#include <cstddef>

namespace glyphmotion {

/// `bytes` zeroed bytes, at least one, that the file has room for; null when there is no such file or no room. The
/// caller passes them to FreePaged with the same size.
void* AllocatePaged(std::size_t bytes) noexcept;

/// Lets the bytes leave the process until they are touched again. They keep their values. Any thread, at any time.
void PageOut(void* memory, std::size_t bytes) noexcept;

void FreePaged(void* memory, std::size_t bytes) noexcept;

}  // namespace glyphmotion
