// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

namespace glyphmotion {

/// FNV-1a of 64 bits, to tell texts and files apart that nobody forges (Fowler, Noll and Vo).
inline std::uint64_t DigestOf(std::string_view bytes) noexcept {
  std::uint64_t digest = 0xcbf29ce484222325u;
  for (const char c : bytes) digest = (digest ^ static_cast<std::uint8_t>(c)) * 0x100000001b3u;
  return digest;
}

}  // namespace glyphmotion
